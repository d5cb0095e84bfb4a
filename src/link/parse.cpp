#include "link/parse.h"

#include "link/bounds.h"

#include <QStringDecoder>
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
    // Stateless: a character that is cut off at the end is replaced too, not waited for.
    QStringDecoder decoder(QStringDecoder::Utf8,
        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    return decoder(bytes);
}

QString text(QByteArrayView bytes, qsizetype most)
{
    // No character takes more than three bytes a unit.
    return bounds::bounded(text(bytes.first(std::min(bytes.size(), 3 * most + 3))), most);
}

QStringList list(QByteArrayView bytes, qsizetype most, qsizetype longest)
{
    QStringList texts;
    while (!bytes.isEmpty() && texts.size() < most) {
        if (const QByteArrayView part = takePart(bytes); !part.isEmpty())
            texts << text(part, longest);
    }
    return texts;
}

QByteArrayView takePart(QByteArrayView &bytes)
{
    const qsizetype end = bytes.indexOf('|');
    const QByteArrayView part = end < 0 ? bytes : bytes.first(end);
    bytes = end < 0 ? QByteArrayView() : bytes.sliced(end + 1);
    return part;
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
