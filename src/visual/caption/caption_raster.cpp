#include "visual/caption/caption_raster.h"

#include <QFontInfo>
#include <QGlyphRun>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

constexpr double usualSize = 24; // points
constexpr double sizeStep = 2;
constexpr double longestLine = 86; // letters
constexpr double letterWidth = 0.602; // of the size
constexpr double lineHeight = 1.17; // likewise

constexpr double glowRadius = 9; // points
constexpr double glowMargin = 14; // beyond that not one step of the light is left

void layOut(QTextLayout &layout, double width)
{
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WordWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    double y = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setLeadingIncluded(true);
        line.setPosition({0, y});
        y += line.height();
    }
    layout.endLayout();
}

/// What the letters cover, and at least a stroke along each line.
QRectF inkOf(const QTextLayout &layout)
{
    QRectF ink;
    for (int n = 0; n < layout.lineCount(); ++n) {
        const QTextLine line = layout.lineAt(n);
        const QRectF text = line.naturalTextRect();
        ink |= QRectF(text.left(), text.top() + line.ascent() - 1, std::max(text.width(), 1.0), 1);
        for (const QGlyphRun &run : line.glyphRuns())
            ink |= run.boundingRect();
    }
    return ink;
}

/// Divides the picture's area among the units of the text: a cell reaches from its unit to the
/// next, and those at a border out to the area's edge.
std::vector<CaptionRaster::Cell> cellsOf(const QTextLayout &layout, const QRectF &area)
{
    std::vector<CaptionRaster::Cell> cells;
    const int lines = layout.lineCount();
    for (int n = 0; n < lines; ++n) {
        const QTextLine line = layout.lineAt(n);
        const double top = n == 0 ? area.top() : line.y();
        const double bottom = n + 1 == lines ? area.bottom() : line.y() + line.height();
        const int end = line.textStart() + line.textLength();
        double left = area.left();
        for (int unit = line.textStart(); unit < end; ++unit) {
            const double right = unit + 1 == end ? area.right() : line.cursorToX(unit + 1);
            if (right > left)
                cells.push_back({unit, {QPointF(left, top), QPointF(right, bottom)}});
            left = std::max(left, right);
        }
    }
    return cells;
}

std::vector<CaptionRaster::Word> wordsOf(const QTextLayout &layout)
{
    std::vector<CaptionRaster::Word> words;
    const QString text = layout.text();
    const double thickness = std::max(2.0, std::round(QFontInfo(layout.font()).pixelSize() / 12.0));
    for (int n = 0; n < layout.lineCount(); ++n) {
        const QTextLine line = layout.lineAt(n);
        const int end = line.textStart() + line.textLength();
        for (int from = line.textStart(), to = from; from < end; from = to + 1) {
            for (to = from; to < end && !text[to].isSpace(); ++to) { }
            if (to == from)
                continue;
            const double left = std::min(line.cursorToX(from), line.cursorToX(to));
            const double right = std::max(line.cursorToX(from), line.cursorToX(to));
            const double top = std::round(line.y() + line.ascent() + line.descent() * 0.8);
            words.push_back({from, {left, top, right - left, thickness}});
        }
    }
    return words;
}

/// One pass of a box blur of 2 × `reach` + 1 bytes over `count` bytes that lie `stride` apart.
void blurLine(uchar *bytes, qsizetype count, qsizetype stride, int reach, std::vector<uchar> &copy)
{
    copy.resize(static_cast<std::size_t>(count));
    for (qsizetype i = 0; i < count; ++i)
        copy[static_cast<std::size_t>(i)] = bytes[i * stride];
    const auto at = [&](qsizetype i) {
        return i < 0 || i >= count ? 0 : int(copy[static_cast<std::size_t>(i)]);
    };
    const int box = 2 * reach + 1;
    int sum = 0;
    for (qsizetype i = 0; i < reach; ++i)
        sum += at(i);
    for (qsizetype i = 0; i < count; ++i) {
        sum += at(i + reach) - at(i - reach - 1);
        bytes[i * stride] = static_cast<uchar>((sum + box / 2) / box);
    }
}

/// Three box blurs are as good as a Gaussian of half the radius.
void blur(QImage &grey, double radius)
{
    const int reach = std::max(static_cast<int>(std::lround(radius / 2)), 1);
    std::vector<uchar> copy;
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < grey.height(); ++y)
            blurLine(grey.scanLine(y), grey.width(), 1, reach, copy);
        for (int x = 0; x < grey.width(); ++x)
            blurLine(grey.bits() + x, grey.height(), grey.bytesPerLine(), reach, copy);
    }
}

} // namespace

double captionSize(double wanted, QSizeF room)
{
    const auto fits = [room](double size) {
        const double letters = room.width() / (letterWidth * size) - 1; // words leave some empty
        return std::ceil(longestLine / std::max(letters, 1.0)) * lineHeight * size <= room.height();
    };
    while (wanted > usualSize && !fits(wanted))
        wanted = std::max(wanted - sizeStep, usualSize);
    return wanted;
}

CaptionRaster rasterise(const QString &text, const QFont &font, double width, double pixels)
{
    CaptionRaster raster;
    if (text.isEmpty() || width <= 0)
        return raster;
    QTextLayout layout(text, font);
    layOut(layout, width);
    raster.size = layout.boundingRect().size();
    // Whole points, so that the picture's pixels meet the screen's; none of them without need, for
    // each is coloured anew in every frame.
    raster.area =
        inkOf(layout).adjusted(-glowMargin, -glowMargin, glowMargin, glowMargin).toAlignedRect();
    raster.cells = cellsOf(layout, raster.area);
    raster.words = wordsOf(layout);

    QImage letters((raster.area.size() * pixels).toSize(), QImage::Format_Alpha8);
    letters.fill(0);
    QPainter painter(&letters);
    painter.scale(pixels, pixels);
    painter.translate(-raster.area.topLeft());
    layout.draw(&painter, {});
    painter.end();
    QImage light = letters;
    blur(light, glowRadius * pixels);

    raster.picture = QImage(letters.size(), QImage::Format_RGBX8888);
    for (int y = 0; y < letters.height(); ++y) {
        const uchar *letter = letters.constScanLine(y);
        const uchar *halo = light.constScanLine(y);
        uchar *out = raster.picture.scanLine(y);
        for (int x = 0; x < letters.width(); ++x, out += 4) {
            out[0] = letter[x];
            out[1] = halo[x];
            out[2] = 0;
            out[3] = 255;
        }
    }
    return raster;
}

} // namespace kelo
