#include "welcome/answers.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr std::array monthLengths{0, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

/// The letters of `text` one by one, each with the accents that belong to it.
QStringList letters(const QString &text)
{
    QStringList found;
    const QString composed = text.normalized(QString::NormalizationForm_C);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, composed);
    for (qsizetype from = 0, to = 0; (to = finder.toNextBoundary()) >= 0; from = to) {
        const QString sign = composed.sliced(from, to - from);
        if (QChar::isLetter(sign.toUcs4().value(0)))
            found += sign;
    }
    return found;
}

bool makesAName(const QStringList &own)
{
    return own.size() >= 3 && own.size() <= 12;
}

/// Free text must neither end a field nor the line.
QString cleaned(QString text)
{
    const auto breaks = [](QChar c) {
        return c == u'|' || (c >= u'\n' && c <= u'\r') || c == u'\x85' || c == u'\u2028'
            || c == u'\u2029';
    };
    std::ranges::replace_if(text, breaks, QChar(u' '));
    return text.trimmed();
}

QString flag(bool on)
{
    return on ? u"true"_s : u"false"_s;
}

} // namespace

const QStringList &assistantNames()
{
    static const QStringList names{
        u"Kelo"_s, u"Apollo"_s, u"Harmony"_s, u"Phoenix"_s, u"Luna"_s, u"Melody"_s, u"Aria"_s};
    return names;
}

QString Answers::chosen() const
{
    QStringList own = letters(custom);
    if (!makesAName(own))
        return assistantNames().value(wake);
    const QString first = own.takeFirst().toUpper();
    return first + own.join(QString()).toLower();
}

bool Answers::hasOwnName() const
{
    return makesAName(letters(custom));
}

int Answers::dayCount() const
{
    return monthLengths.at(static_cast<std::size_t>(month));
}

void Answers::chooseName(int index)
{
    if (index < 0 || index >= assistantNames().size())
        return;
    wake = index;
    custom.clear();
}

void Answers::chooseMonth(int number)
{
    if (number < 0 || number > 12)
        return;
    month = number;
    day = month == 0 ? 0 : std::clamp(day, 1, dayCount());
}

void Answers::chooseDay(int number)
{
    if (number >= 1 && number <= dayCount())
        day = number;
}

QString Answers::cleanedName() const
{
    return cleaned(name);
}

QString Answers::setupLine() const
{
    QStringList needs;
    if (reader)
        needs += u"uses a screen reader, so never rely on anything visual"_s;
    if (plays)
        needs += u"plays piano or makes music"_s;
    const auto twoDigits = [](int number) { return u"%1"_s.arg(number, 2, 10, QChar(u'0')); };
    const QString birthday = month < 1 ? QString() : twoDigits(month) + u'-' + twoDigits(day);
    const QStringList fields{cleanedName(), chosen(), cleaned(city), fahrenheit ? u"F"_s : u"C"_s,
        needs.join(u"; "_s), flag(plays), birthday, flag(natural)};
    return u"~setup "_s + fields.join(u'|') + u'\n';
}

} // namespace kelo
