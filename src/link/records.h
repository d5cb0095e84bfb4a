#pragma once

#include <QString>

#include <array>
#include <optional>

namespace kelo {

/// One line of the voice log.
struct Spoken {
    qint64 id = 0; ///< 1, 2, 3 ...; unique for the process
    QString time; ///< local wall-clock time, "HH:mm:ss"
    QString text; ///< lines heard from the user begin with "▸ YOU: "

    friend bool operator==(const Spoken &, const Spoken &) = default;
};

/// One key press of the player, or one note that the engine sounded.
/// Times are seconds of uptime.
struct Ripple {
    qint64 pitch = 0; ///< MIDI note number as sent; may lie outside the keyboard
    double at = 0;
    double strength = 0; ///< velocity / 127
    std::optional<double> off; ///< absent while the key is held

    friend bool operator==(const Ripple &, const Ripple &) = default;
};

/// One note of the MIDI file that is playing. Times are seconds from the roll's zero.
/// A roll may hold a million of these, so the record is kept small.
struct RollNote {
    double t = 0;
    double dur = 0;
    qint64 pitch = 0;
    qint64 vel = 0;
    qint64 track = 0;

    friend bool operator==(const RollNote &, const RollNote &) = default;
};

/// Bands of the assistant's voice in one spectrum frame, lowest first.
inline constexpr int voiceBandCount = 16;

/// One spectrum frame of the assistant's voice; 60 of them make a second. Values are 0 to 1.
using VoiceFrame = std::array<double, voiceBandCount>;

} // namespace kelo
