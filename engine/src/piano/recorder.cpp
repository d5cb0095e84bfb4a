#include "piano/recorder.h"

namespace kelo::engine {

void Recorder::key(int pitch, int velocity, double now)
{
    if (pitch < 0 || pitch > 127)
        return;
    auto &note = held_[static_cast<std::size_t>(pitch)];
    if (note)
        notes_[*note].duration = now - begun_ - notes_[*note].at;
    note.reset();
    if (velocity > 0 && (notes_.empty() || now - lastKey_ > silence)) {
        notes_.clear();
        held_ = {};
        begun_ = now;
    }
    lastKey_ = now;
    if (velocity <= 0 || notes_.size() >= mostNotes)
        return;
    note = notes_.size();
    notes_.push_back({now - begun_, 0, pitch, velocity, 0, 0});
}

std::optional<Piece> Recorder::lastTake(double now) const
{
    if (notes_.empty())
        return {};
    Piece piece;
    piece.notes = notes_;
    for (const auto &note : held_) {
        if (note)
            piece.notes[*note].duration = now - begun_ - piece.notes[*note].at;
    }
    addMessages(piece);
    return piece;
}

} // namespace kelo::engine
