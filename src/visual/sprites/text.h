#pragma once

#include "visual/sprites/palette.h"

#include <QFont>
#include <QList>
#include <QObject>
#include <QString>

namespace kelo {

// Of the face's size.
inline constexpr double letterWidth = 0.602;
inline constexpr double capHeight = 0.73;

/// The one face of the display: the system's fixed-width one, `size` device-independent pixels
/// high (whole ones: the font engine knows no others).
[[nodiscard]] QFont mono(double size, QFont::Weight weight = QFont::Normal);

/// One text over a scene.
struct Label {
    Q_GADGET
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(double x MEMBER x)
    Q_PROPERTY(double y MEMBER y)
    Q_PROPERTY(bool centred MEMBER centred)
    Q_PROPERTY(double width MEMBER width)
    Q_PROPERTY(int lines MEMBER lines)
    Q_PROPERTY(bool backed MEMBER backed)
    Q_PROPERTY(QFont font READ font)
    Q_PROPERTY(QColor colour READ qColour)

public:
    QString text;
    double x = 0; ///< its left edge, or its middle when `centred`
    double y = 0; ///< the baseline of its only line, or the top of several
    double size = 0; ///< points
    bool bold = true;
    bool centred = false;
    double width = 0; ///< most that it may take; longer text wraps, then is cut off. 0: any
    int lines = 1; ///< most lines
    bool backed = false; ///< has a dark ground, to be read over whatever passes behind it
    Colour colour;

    [[nodiscard]] QFont font() const { return mono(size, bold ? QFont::Bold : QFont::Normal); }
    [[nodiscard]] QColor qColour() const { return colour.toQColor(); }

    friend bool operator==(const Label &, const Label &) = default;
};

using LabelList = QList<Label>;

} // namespace kelo
