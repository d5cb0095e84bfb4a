#pragma once

#include "music/piece.h"
#include "music/written.h"

#include <memory>
#include <vector>

namespace kelo::engine {

enum class Repeats { Played, Skipped };

/// The bars of a piece in the order in which they are played: repeats, endings, da capo and the
/// like. A piece that would never end is cut.
[[nodiscard]] std::vector<int> playedBars(const WrittenPiece &written, Repeats repeats);

/// A piece as it is played; it remembers how it is written.
[[nodiscard]] Piece performed(std::shared_ptr<const WrittenPiece> written, Repeats repeats);

/// What is practised of a piece: each bar once where it is known how the piece is written. It
/// knows its hands.
[[nodiscard]] Piece studied(const Piece &piece);

} // namespace kelo::engine
