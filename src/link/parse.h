#pragma once

#include <QByteArrayView>
#include <QStringList>
#include <QVarLengthArray>

#include <optional>
#include <vector>

/// Reading the arguments of the engine's lines. A number is read whole or not at all.
namespace kelo::parse {

/// An optionally signed decimal integer that fits 64 bits and takes up all of `text`.
[[nodiscard]] std::optional<qint64> integer(QByteArrayView text);

/// A finite decimal number ("2", "-0.5", "1e3") that takes up all of `text`.
[[nodiscard]] std::optional<double> decimal(QByteArrayView text);

/// The sum, or the nearest number that there is.
[[nodiscard]] qint64 saturatedSum(qint64 a, qint64 b);

/// The text of UTF-8, bytes that are none replaced; a byte-order mark is a character like others.
[[nodiscard]] QString text(QByteArrayView bytes);

/// The same, of at most `most` UTF-16 units.
[[nodiscard]] QString text(QByteArrayView bytes, qsizetype most);

/// The first `most` texts between "|", empty ones dropped, each of at most `longest` UTF-16 units.
[[nodiscard]] QStringList list(QByteArrayView bytes, qsizetype most, qsizetype longest);

/// What stands before the first "|", and takes it and the "|" off `bytes`. Nothing is left when
/// there is none; `bytes` is null then.
[[nodiscard]] QByteArrayView takePart(QByteArrayView &bytes);

using Pieces = QVarLengthArray<QByteArrayView, 8>;
using Integers = QVarLengthArray<qint64, 16>;

/// Splits at `separator`, empty pieces dropped. With `most` above 0 the last of at most that many
/// pieces keeps everything that is left, separators included.
[[nodiscard]] Pieces pieces(QByteArrayView text, char separator = ' ', int most = 0);

/// The integers among the space-separated tokens; anything else is passed over.
[[nodiscard]] Integers integers(QByteArrayView text);

/// Calls `visit` with every piece of `text` between separators, empty pieces dropped.
template <typename Visit> void eachPiece(QByteArrayView text, char separator, Visit visit)
{
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf(separator);
        const QByteArrayView piece = end < 0 ? text : text.first(end);
        text = end < 0 ? QByteArrayView() : text.sliced(end + 1);
        if (!piece.isEmpty())
            visit(piece);
    }
}

} // namespace kelo::parse
