#pragma once

#include <QFont>
#include <QImage>
#include <QRectF>
#include <QString>

#include <vector>

namespace kelo {

/// A caption's line as a picture without colour, made once so that it can be coloured anew each
/// frame for next to nothing.
struct CaptionRaster {
    /// One unit of the text and the part of the picture that shows it. Together the cells cover
    /// the picture.
    struct Cell {
        qsizetype unit = 0; ///< of the text, in UTF-16 units
        QRectF place; ///< in points, from the text's upper left corner
    };

    /// One word of the text and the place of a line beneath it.
    struct Word {
        qsizetype start = 0; ///< in UTF-16 units
        QRectF under; ///< in points, from the text's upper left corner
    };

    QImage picture; ///< red: how much of a pixel the text covers; green: the light around it
    QRectF area; ///< of the picture, in points, from the text's upper left corner
    QSizeF size; ///< of the text, wrapped to its width, in points
    std::vector<Cell> cells;
    std::vector<Word> words; ///< in their order
};

/// The size of letters, in points, in which even the longest line of a caption fits into `room`:
/// `wanted`, or as much less as it takes, but never less than captions have usually.
[[nodiscard]] double captionSize(double wanted, QSizeF room);

/// Lays `text` out centred in `width` points, wrapped between words, and draws it and its blurred
/// light at `pixels` pixels a point.
[[nodiscard]] CaptionRaster rasterise(
    const QString &text, const QFont &font, double width, double pixels);

} // namespace kelo
