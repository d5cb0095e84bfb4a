#include "link/parse.h"

#include <QtNumeric>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace kelo::parse {

namespace {

QByteArrayView withoutPlus(QByteArrayView text)
{
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
    return plus ? text.sliced(1) : text;
}

} // namespace

std::optional<qint64> integer(QByteArrayView text)
{
    const QByteArrayView digits = withoutPlus(text);
    qint64 value = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), value);
    if (error != std::errc() || end != digits.end() || digits.isEmpty())
        return std::nullopt;
    return value;
}

std::optional<double> decimal(QByteArrayView text)
{
    // The library's reader also knows infinities and surrounding blanks, which are no numbers here.
    const bool plain = std::ranges::all_of(text, [](char c) {
        return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
    });
    if (!plain || text.isEmpty())
        return std::nullopt;
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

qint64 saturatedSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (!qAddOverflow(a, b, &sum))
        return sum;
    return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

QString text(QByteArrayView bytes)
{
    return QString::fromUtf8(bytes);
}

QStringList list(QByteArrayView bytes)
{
    return text(bytes).split(u'|', Qt::SkipEmptyParts);
}

Pieces pieces(QByteArrayView text, char separator, int most)
{
    Pieces found;
    while (!text.isEmpty()) {
        if (text.front() == separator) {
            text = text.sliced(1);
            continue;
        }
        const qsizetype end = found.size() + 1 == most ? -1 : text.indexOf(separator);
        found.append(end < 0 ? text : text.first(end));
        if (end < 0)
            break;
        text = text.sliced(end + 1);
    }
    return found;
}

Integers integers(QByteArrayView text)
{
    Integers found;
    eachPiece(text, ' ', [&found](QByteArrayView token) {
        if (const auto value = integer(token))
            found.append(*value);
    });
    return found;
}

} // namespace kelo::parse
