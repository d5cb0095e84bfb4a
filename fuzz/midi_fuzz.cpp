// Any bytes as a MIDI file: whatever is read of it must be in order, go through a lesson, be
// written down as a score and come back from being saved.

#include "lessons/excerpt.h"
#include "music/midi_file.h"
#include "music/midi_writer.h"
#include "written/transcript.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace kelo::engine;

namespace {

constexpr double longest = 24 * 3600.0;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void check(const Piece &piece)
{
    check(!piece.notes.empty() && std::ranges::is_sorted(piece.notes, {}, &Note::at));
    check(std::ranges::is_sorted(piece.messages, {}, &TimedMessage::at));
    check(std::ranges::is_sorted(piece.bars));
    check(std::isfinite(piece.length) && piece.length <= longest + 1);
    for (const Note &note : piece.notes) {
        check(note.at >= 0 && note.duration >= 0 && note.at + note.duration <= longest + 1);
        check(note.pitch >= 0 && note.pitch < 128 && note.velocity > 0 && note.velocity < 128);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    const auto read = readMidiFile({bytes, size});
    const auto *piece = std::get_if<Piece>(&read);
    if (!piece)
        return 0;
    check(*piece);
    for (const Hands hands : {Hands::Both, Hands::Right, Hands::Left}) {
        const auto excerpts = excerptsOf(*piece, hands);
        for (const Excerpt &excerpt : excerpts)
            check(!excerpt.steps.empty() && excerpt.firstBar <= excerpt.lastBar);
        if (!excerpts.empty())
            check(!pieceOf(excerpts.back(), *piece).notes.empty());
    }
    check(std::ranges::is_sorted(writtenOf(*piece)->notes, {}, &WrittenNote::at));
    const auto again = readMidiFile(writeMidiFile(*piece));
    check(std::holds_alternative<Piece>(again));
    check(std::get<Piece>(again));
    return 0;
}
