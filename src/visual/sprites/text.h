#pragma once

#include "visual/sprites/palette.h"

#include <QFont>
#include <QList>
#include <QRectF>
#include <QString>
#include <QTextLayout>

class QPainter;

namespace kelo {

// Of the face's size.
inline constexpr double letterWidth = 0.602;
inline constexpr double capHeight = 0.73;

/// The one face of the display: the system's fixed-width one, `size` device-independent pixels
/// high, fractions included.
[[nodiscard]] QFont mono(double size, QFont::Weight weight = QFont::Normal);

/// One text over a scene, placed from the scene's lower left corner.
struct Label {
    /// What keeps it readable over what is behind it.
    enum class Ground {
        None,
        Plate, ///< a small dark plate
        Outline, ///< a dark line around the letters
    };

    QString text;
    double x = 0; ///< its left edge, or its middle when `centred`
    double y = 0; ///< the baseline of its only line, or the top of several
    double size = 0; ///< points
    bool bold = true;
    bool centred = false;
    double width = 0; ///< most that it may take; longer text wraps, then is cut off. 0: any
    int lines = 1; ///< most lines
    Ground ground = Ground::None;
    Colour colour;

    friend bool operator==(const Label &, const Label &) = default;
};

using LabelList = QList<Label>;

/// A label in type: what it covers, and how it is painted.
class SetLabel {
public:
    /// `height`: of the scene, in points.
    SetLabel(const Label &label, double height);

    /// The letters' place, in points, y down, from the scene's upper left corner.
    [[nodiscard]] QRectF text() const { return text_; }
    /// The same with what keeps them readable.
    [[nodiscard]] QRectF area() const;
    void paint(QPainter &painter) const;

private:
    void layOut(const QString &words);

    Label label_;
    QTextLayout layout_;
    QPointF origin_; // of the layout, in the scene
    QRectF text_;
};

} // namespace kelo
