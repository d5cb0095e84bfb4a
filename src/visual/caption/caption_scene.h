#pragma once

#include "visual/sprites/palette.h"

#include <QString>

namespace kelo {

class Link;

/// Colour of a caption's unit that the voice is `ahead` units past; negative when it is still to
/// come. White where the voice is, with a long tail behind it and a short lead before it.
[[nodiscard]] Colour captionColour(double ahead, bool contrast);

/// Opacity of a caption `silence` seconds after its speech ended: it stays for a while, then fades.
[[nodiscard]] double captionOpacity(double silence);

/// A line of the caption: text that is shown together.
struct CaptionLine {
    QString text;
    qsizetype start = 0; ///< of its text in the caption, in UTF-16 units

    friend bool operator==(const CaptionLine &, const CaptionLine &) = default;
};

/// What the caption shows: its current line, and for a moment the line before it, which leaves.
class CaptionScene {
public:
    /// A line on its way in or out.
    struct Motion {
        double offset = 0; ///< points below its place
        double opacity = 1;
    };

    /// Brings the caption to `now`, in seconds of uptime; moves the link's cursor on.
    void update(Link &link, double now);

    [[nodiscard]] const CaptionLine &line() const { return line_; }
    [[nodiscard]] const CaptionLine &leaving() const { return leaving_; } ///< empty: none
    [[nodiscard]] Motion arrival() const;
    [[nodiscard]] Motion departure() const;
    [[nodiscard]] double position() const { return position_; } ///< of the voice, in units
    [[nodiscard]] double opacity() const { return opacity_; } ///< of all of it
    [[nodiscard]] double glow() const { return glow_; } ///< opacity of the light around it

private:
    CaptionLine line_;
    CaptionLine leaving_;
    double part_ = 1; // of the way from the leaving line to this one, eased
    double changedAt_ = -1; // uptime at which the line changed
    double position_ = 0;
    double opacity_ = 0;
    double glow_ = 0;
};

} // namespace kelo
