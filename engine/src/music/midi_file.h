#pragma once

#include "music/midi_reader.h"
#include "music/piece.h"
#include "music/read_fault.h"

#include <atomic>
#include <variant>

namespace kelo::engine {

/// How far reading has come, for other threads to look at.
struct MidiProgress {
    std::atomic<double> share = 0; ///< 0 to 1
    std::atomic<bool> cancelled = false; ///< it may stop with what it has
};

/// Reads a Standard MIDI File, bare or in a RIFF file (RMID). The tracks of format 2 follow each
/// other. A damaged file gives what is whole in it; notes that are never released end with their
/// track. What lies beyond a day is left out.
[[nodiscard]] std::variant<Piece, ReadFault> readMidiFile(
    const MidiSource &source, MidiProgress *progress = nullptr);
[[nodiscard]] std::variant<Piece, ReadFault> readMidiFile(
    MidiBytes bytes, MidiProgress *progress = nullptr);

/// Whether a file that begins so is one of MIDI.
[[nodiscard]] bool looksLikeMidi(MidiBytes begin);

} // namespace kelo::engine
