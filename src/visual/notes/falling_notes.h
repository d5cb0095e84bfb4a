#pragma once

#include "link/records.h"
#include "visual/notes/rain_layout.h"
#include "visual/sprites/sprite.h"

#include <vector>

namespace kelo {

/// The notes of a roll that are on their way down. Each comes into view just in time to land on
/// its key when it sounds, and sinks into it while it lasts. The work of a frame is in proportion
/// to the notes in view, not to the roll.
class FallingNotes {
public:
    /// Brings the notes to `elapsed` seconds from the roll's zero. The roll ascends by time.
    /// A step back in time starts over, so that notes that had sunk fall again.
    void advance(const std::vector<RollNote> &roll, double elapsed, const RainLayout &layout);
    /// Starts over from the roll's first note.
    void clear();

    void drawGlows(SpriteList &list) const;
    void drawBars(SpriteList &list) const;

private:
    struct Note {
        double at; // seconds from the roll's zero
        double length; // points
        double y = 0; // of its lower end
        double x;
        double width;
        double strength;
        Colour colour;
    };

    static Note falling(const RollNote &note, const RainLayout &layout);

    std::vector<Note> notes_;
    std::size_t next_ = 0; // of the roll, first one not yet considered
    double elapsed_ = 0;
};

} // namespace kelo
