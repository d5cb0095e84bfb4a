#include "link/piano_roll.h"

#include "link/bounds.h"

namespace kelo {

void PianoRoll::begin(const QString &title)
{
    notes.clear();
    zero.reset();
    name = title;
    rolling = true;
}

void PianoRoll::append(const RollNote &note)
{
    if (notes.size() < bounds::rollNotes)
        notes.push_back(note);
}

void PianoRoll::stop()
{
    rolling = false;
    zero.reset();
}

} // namespace kelo
