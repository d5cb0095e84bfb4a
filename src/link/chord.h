#pragma once

#include <QString>

#include <optional>
#include <span>

namespace kelo {

/// The name of the chord that these MIDI pitches form together ("A MINOR 7"), or nothing when
/// fewer than three different notes sound or no chord fits. Any order, duplicates allowed; the
/// lowest pitch is the bass.
[[nodiscard]] std::optional<QString> chordName(std::span<const qint64> pitches);

} // namespace kelo
