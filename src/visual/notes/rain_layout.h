#pragma once

#include "visual/keys/keyboard.h"

#include <algorithm>

namespace kelo {

/// Sizes of the falling-notes scene, in points: a keyboard along the bottom, notes above it.
struct RainLayout {
    double width = 0;
    double height = 0;

    /// Everything that rises or falls moves this fast, points a second.
    static constexpr double speed = 330;
    /// A note's glow reaches this far beyond its ends, in points.
    static constexpr double glowMargin = 14;

    /// Large enough for a keyboard.
    [[nodiscard]] bool isUsable() const { return width > 100; }
    [[nodiscard]] double keyWidth() const { return width / keyboard::whiteCount; }
    /// Height of the keyboard, on whose upper edge notes land.
    [[nodiscard]] double floor() const { return std::min(height * 0.2, 160.0); }
    [[nodiscard]] double centre(qint64 pitch) const { return keyboard::centre(pitch, keyWidth()); }
    [[nodiscard]] double noteWidth(qint64 pitch) const
    {
        return keyboard::noteWidth(pitch, keyWidth());
    }

    friend bool operator==(const RainLayout &, const RainLayout &) = default;
};

} // namespace kelo
