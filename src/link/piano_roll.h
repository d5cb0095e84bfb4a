#pragma once

#include "link/records.h"

#include <optional>
#include <vector>

namespace kelo {

/// The MIDI file that the engine plays, as a roll of notes.
struct PianoRoll {
    QString name; ///< title of the piece
    bool rolling = false; ///< it is being played
    std::vector<RollNote> notes; ///< ascending by time, as the engine sends it
    std::optional<double> zero; ///< uptime at which the roll's time 0 falls
    double length = 0; ///< seconds

    /// A piece called `title` is about to play; its notes follow.
    void begin(const QString &title);
    void append(const RollNote &note);
    void stop();
};

} // namespace kelo
