#pragma once

#include "music/read_fault.h"
#include "music/written.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>

namespace kelo::engine {

/// The largest score that is read, unpacked. What a piano piece needs is a tenth of it.
inline constexpr std::size_t largestScore = std::size_t{16} << 20;

/// Reads a partwise MusicXML score: staves, voices, fingers, dynamics, repeats, lyrics, chord
/// symbols and tempos. What is damaged or beyond all measure in it is left out.
[[nodiscard]] std::variant<WrittenPiece, ReadFault> readMusicXml(
    std::span<const std::uint8_t> bytes);

} // namespace kelo::engine
