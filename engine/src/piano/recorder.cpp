#include "piano/recorder.h"

namespace kelo::engine {

void Recorder::key(int pitch, int velocity, double now)
{
    if (pitch < 0 || pitch > 127)
        return;
    auto &note = held[static_cast<std::size_t>(pitch)];
    if (note)
        notes[*note].duration = now - begun - notes[*note].at;
    note.reset();
    if (velocity > 0 && (notes.empty() || now - lastKey > silence)) {
        notes.clear();
        held = {};
        begun = now;
    }
    lastKey = now;
    if (velocity <= 0 || notes.size() >= mostNotes)
        return;
    note = notes.size();
    notes.push_back({now - begun, 0, pitch, velocity, 0, 0});
}

std::optional<Piece> Recorder::lastTake(double now) const
{
    if (notes.empty())
        return {};
    Piece piece;
    piece.notes = notes;
    for (const auto &note : held) {
        if (note)
            piece.notes[*note].duration = now - begun - piece.notes[*note].at;
    }
    addMessages(piece);
    return piece;
}

} // namespace kelo::engine
