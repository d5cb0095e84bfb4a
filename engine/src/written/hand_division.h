#pragma once

#include "music/piece.h"

#include <optional>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// Whose hand each note of a piece is: as it is written where that is known, else by the names of
/// tracks, by two tracks of which the higher is the right hand's, or by what two hands can reach
/// and how they move. Notes of other instruments and drums are nobody's: they count as `Both`.
[[nodiscard]] std::vector<Hands> handsOf(const Piece &piece);

/// Another reading, where nothing tells for sure whose hand plays what.
struct HandsInDoubt {
    std::vector<Hands> second{}; ///< of each note; the first reading is what `handsOf` says
    std::string_view firstIs{}; ///< in words, "for the right hand"
    std::string_view secondIs{};
};

/// Nothing where it is written down, where tracks are named after hands or lie apart, or where
/// hardly a note could as well be the other hand's.
[[nodiscard]] std::optional<HandsInDoubt> handsInDoubt(const Piece &piece);

/// The piece in the first reading of its hands or the second, as if it were written down. What is
/// not in doubt stays as it is.
[[nodiscard]] Piece withReading(const Piece &piece, int reading);

} // namespace kelo::engine
