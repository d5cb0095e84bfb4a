#include "music/piece.h"

#include <algorithm>

namespace kelo::engine {

std::optional<std::size_t> barPlace(const Piece &piece, int number)
{
    std::size_t place = static_cast<std::size_t>(std::max(number, 1)) - 1;
    if (!piece.barNumbers.empty()) {
        const auto found = std::ranges::find(piece.barNumbers, number);
        place = static_cast<std::size_t>(found - piece.barNumbers.begin());
    }
    return place < piece.bars.size() ? std::optional(place) : std::nullopt;
}

void measureLength(Piece &piece)
{
    for (const Note &note : piece.notes)
        piece.length = std::max(piece.length, note.at + note.duration);
}

} // namespace kelo::engine
