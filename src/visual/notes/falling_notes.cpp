#include "visual/notes/falling_notes.h"

#include "visual/sprites/palette.h"

#include <cmath>

namespace kelo {

namespace {

constexpr std::size_t mostInView = 20'000; // far beyond what can be told apart
constexpr double sunk = 4; // points below the floor at which a note is gone
constexpr double longestNote = 1e6; // points; nobody sees the end of a longer one

} // namespace

void FallingNotes::clear()
{
    notes_.clear();
    next_ = 0;
}

FallingNotes::Note FallingNotes::falling(const RollNote &note, const RainLayout &layout)
{
    return {.at = note.t,
        .length = std::clamp(note.dur * RainLayout::speed, 0.0, longestNote),
        .x = layout.centre(note.pitch),
        .width = layout.noteWidth(note.pitch),
        .strength = std::clamp(static_cast<double>(note.vel) / 127, 0.0, 1.0),
        .colour = note.track % 2 == 0 ? colours::green : colours::teal};
}

void FallingNotes::advance(
    const std::vector<RollNote> &roll, double elapsed, const RainLayout &layout)
{
    if (elapsed < elapsed_)
        clear();
    elapsed_ = elapsed;
    const double lead = (layout.height - layout.floor()) / RainLayout::speed;
    for (; next_ < roll.size() && notes_.size() < mostInView; ++next_) {
        const RollNote &note = roll[next_];
        if (elapsed < note.t - lead)
            break;
        if (note.t + note.dur >= elapsed)
            notes_.push_back(falling(note, layout));
    }
    std::erase_if(notes_, [&](Note &note) {
        note.y = layout.floor() + (note.at - elapsed) * RainLayout::speed;
        return note.y + note.length < layout.floor() - sunk;
    });
}

void FallingNotes::drawGlows(SpriteList &list) const
{
    for (const Note &note : notes_) {
        list.push_back(glow(note.x, note.y - RainLayout::glowMargin, note.width * 3,
            note.length + 2 * RainLayout::glowMargin,
            note.colour.faded(note.strength * 0.25 + 0.22)));
    }
}

void FallingNotes::drawBars(SpriteList &list) const
{
    for (const Note &note : notes_) {
        const Colour lit = mixed(note.colour, white, note.strength * 0.3 + 0.1);
        list.push_back(
            bar(note.x, note.y, note.width, note.length, lit.faded(note.strength * 0.3 + 0.7)));
    }
}

} // namespace kelo
