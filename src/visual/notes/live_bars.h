#pragma once

#include "visual/notes/rain_layout.h"
#include "visual/notes/sparks.h"

#include <vector>

namespace kelo {

/// The bars of notes that are played now: each grows up from its key while it is held, then
/// floats away and out of the scene. A note of the user also gives off sparks while held.
/// A pitch that both the user and the engine play is two bars.
class LiveBars {
public:
    void press(
        int pitch, double strength, bool mine, double now, quint32 seed, const RainLayout &layout);
    /// Lets go of the note's bar, if it is held.
    void release(int pitch, bool mine, double now);
    /// Brings the bars to `now`; those let go float up by `step` points.
    void advance(double now, double step, const RainLayout &layout);
    void clear() { bars_.clear(); }

    void drawGlows(SpriteList &list, const RainLayout &layout) const;
    void drawBars(SpriteList &list, const RainLayout &layout) const;
    void drawSparks(SpriteList &list, double now) const;

private:
    struct Bar {
        int pitch;
        bool mine;
        bool held = true;
        double strength;
        double born; // uptime, seconds
        double length; // points
        double risen = 0; // points above the floor
        Sparks fire; // of the user's notes
    };

    std::vector<Bar> bars_;
};

} // namespace kelo
