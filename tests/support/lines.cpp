#include "lines.h"

#include "files.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelo::test {

QString numbersOf(const std::vector<double> &numbers)
{
    QStringList list;
    for (const double number : numbers) {
        const double rounded = std::round(number * 100) / 100;
        list << QString::number(rounded == 0 ? 0 : rounded, 'g', 10);
    }
    return list.join(u' ');
}

bool alike(const QString &line, const QString &other)
{
    const QStringList words = line.split(u' ');
    const QStringList others = other.split(u' ');
    return std::ranges::equal(words, others, [](const QString &a, const QString &b) {
        const bool place = a.startsWith(u'@') && b.startsWith(u'@');
        bool number = false;
        bool too = false;
        const double one = a.sliced(place).toDouble(&number);
        const double two = b.sliced(place).toDouble(&too);
        const double slack = place ? 0.6 : 0.011 + std::abs(one) / 1000;
        return a == b || (number && too && std::abs(one - two) <= slack);
    });
}

QString unlikeLines(const QStringList &lines, const QString &file, const char *variable)
{
    if (qEnvironmentVariableIsSet(variable))
        writeFile(file, lines.join(u'\n').toUtf8() + '\n');
    const QStringList kept = QString::fromUtf8(readFile(file)).chopped(1).split(u'\n');
    for (qsizetype i = 0; i < std::max(lines.size(), kept.size()); ++i) {
        const QString is = lines.value(i);
        const QString was = kept.value(i);
        if (!alike(is, was))
            return u"line %1: is %2, was %3"_s.arg(i + 1).arg(is, was);
    }
    return {};
}

} // namespace kelo::test
