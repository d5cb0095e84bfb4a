#pragma once

#include "app/window_sight.h"

namespace kelo {

/// What decides whether the caption panel may stand on the screen.
struct PanelFacts {
    double now = 0; ///< seconds of uptime
    bool enabled = true; ///< the user wants the panel
    WindowSight window = WindowSight::Missing; ///< what is seen of the main window
};

/// When the caption panel shows and how long it stays. Times are seconds of uptime.
class OverlayRules {
public:
    /// How often `check` is to be called while the panel is visible.
    static constexpr double checkInterval = 0.25;

    static constexpr double whileSpeaking = 60;
    static constexpr double afterSpeaking = 3.5;
    static constexpr double afterHearing = 9;
    static constexpr double afterGoodResult = 9;

    /// Something happened that the panel would show for `seconds`. A panel that stands stays for
    /// that time, shorter or longer than before. True when the panel may stand now.
    bool show(double seconds, const PanelFacts &facts);
    /// True when the panel is to fade out now.
    bool check(bool speaking, const PanelFacts &facts);

    [[nodiscard]] bool visible() const { return visible_; }

private:
    bool visible_ = false;
    double hideAt_ = 0;
};

} // namespace kelo
