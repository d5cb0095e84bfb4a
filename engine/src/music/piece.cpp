#include "music/piece.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

/// Never longer than told, or a note would reach into the next one of its key, and its end end
/// that.
float rounded(double duration)
{
    const auto near = static_cast<float>(duration);
    return near > duration ? std::nextafter(near, 0.0F) : near;
}

} // namespace

Note::Note(double start, double lasting, int key, int strength, int trackNumber, int channelNumber)
    : at(start)
    , duration(rounded(lasting))
    , pitch(static_cast<std::uint8_t>(std::clamp(key, 0, 127)))
    , velocity(static_cast<std::uint8_t>(std::clamp(strength, 0, 127)))
    , track(static_cast<std::uint8_t>(std::clamp(trackNumber, 0, 255)))
    , channel(static_cast<std::uint8_t>(channelNumber))
{
}

std::optional<std::size_t> barPlace(const Piece &piece, int number)
{
    std::size_t place = static_cast<std::size_t>(std::max(number, 1)) - 1;
    if (!piece.barNumbers.empty()) {
        const auto found = std::ranges::find(piece.barNumbers, number);
        place = static_cast<std::size_t>(found - piece.barNumbers.begin());
    }
    return place < piece.bars.size() ? std::optional(place) : std::nullopt;
}

void Note::endAt(double time)
{
    duration = rounded(time - at);
}

void measureLength(Piece &piece)
{
    for (const Note &note : piece.notes)
        piece.length = std::max(piece.length, note.at + note.duration);
}

} // namespace kelo::engine
