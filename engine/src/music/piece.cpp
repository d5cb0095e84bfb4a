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

void addMessages(Piece &piece)
{
    for (const Note &note : piece.notes) {
        const auto channel = static_cast<unsigned char>(note.channel);
        const auto pitch = static_cast<unsigned char>(note.pitch);
        const auto press = static_cast<unsigned char>(0x90 | channel);
        const auto release = static_cast<unsigned char>(0x80 | channel);
        piece.messages.push_back(
            {note.at, {press, pitch, static_cast<unsigned char>(note.velocity)}});
        piece.messages.push_back({note.at + note.duration, {release, pitch, 0}});
        piece.length = std::max(piece.length, note.at + note.duration);
    }
    std::stable_sort(piece.messages.begin(), piece.messages.end(),
        [](const TimedMessage &a, const TimedMessage &b) { return a.at < b.at; });
}

} // namespace kelo::engine
