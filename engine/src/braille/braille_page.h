#pragma once

#include "music/written.h"

#include <string>

namespace kelo::engine {

/// A bar of both hands, one below the other as on a page, or of one hand; in Unicode's cells.
[[nodiscard]] std::string brailleOfBar(const WrittenPiece &piece, std::size_t bar, Hands hands);

/// The whole piece as a `.brf` file: bar over bar, the hands below each other, on pages of 25 lines
/// of 40 cells, with the number of its first bar before each pair of lines.
[[nodiscard]] std::string brfOf(const WrittenPiece &piece);

} // namespace kelo::engine
