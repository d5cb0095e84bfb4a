#include "music/midi_writer.h"

#include "music/message_feed.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t ticksPerQuarter = 480;
constexpr std::uint32_t longestDelta = 0x0fffffff;

void addNumber(Bytes &bytes, std::uint32_t value, int size)
{
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void addVariable(Bytes &bytes, std::uint32_t value)
{
    for (int shift = 21; shift > 0; shift -= 7) {
        if (value >> shift != 0)
            bytes.push_back(static_cast<std::uint8_t>(0x80 | (value >> shift & 0x7f)));
    }
    bytes.push_back(static_cast<std::uint8_t>(value & 0x7f));
}

/// A meta event at the very beginning.
void addMeta(Bytes &bytes, std::uint8_t kind, const Bytes &contents)
{
    bytes.insert(bytes.end(), {0, 0xff, kind, static_cast<std::uint8_t>(contents.size())});
    bytes.insert(bytes.end(), contents.begin(), contents.end());
}

Bytes signatures(const MidiSignature &signature)
{
    constexpr std::uint32_t microsecondsPerMinute = 60'000'000;
    Bytes tempo;
    addNumber(tempo, microsecondsPerMinute / static_cast<std::uint32_t>(signature.tempo), 3);
    std::uint8_t unitPower = 0;
    while (1 << unitPower < signature.unit)
        ++unitPower;
    Bytes bytes;
    addMeta(bytes, 0x51, tempo);
    addMeta(bytes, 0x58, {static_cast<std::uint8_t>(signature.beats), unitPower, 24, 8});
    addMeta(bytes, 0x59,
        {static_cast<std::uint8_t>(signature.sharps),
            static_cast<std::uint8_t>(signature.minor ? 1 : 0)});
    return bytes;
}

} // namespace

Bytes writeMidiFile(const Piece &piece, const MidiSignature &signature)
{
    const double ticksPerSecond = double{ticksPerQuarter} * signature.tempo / 60.0;
    Bytes track = signatures(signature);
    std::uint32_t now = 0;
    for (MessageFeed feed(piece); const auto next = feed.next(); feed.pop()) {
        const auto &[at, message] = *next;
        const double ticks = std::clamp(at * ticksPerSecond, 0.0, double{longestDelta});
        const auto due = std::max(now, static_cast<std::uint32_t>(std::llround(ticks)));
        addVariable(track, due - now);
        now = due;
        track.push_back(message.status);
        track.push_back(message.first);
        if (message.size() == 3)
            track.push_back(message.second);
    }
    track.insert(track.end(), {0, 0xff, 0x2f, 0});

    Bytes file{'M', 'T', 'h', 'd'};
    addNumber(file, 6, 4);
    addNumber(file, 0, 2);
    addNumber(file, 1, 2);
    addNumber(file, ticksPerQuarter, 2);
    file.insert(file.end(), {'M', 'T', 'r', 'k'});
    addNumber(file, static_cast<std::uint32_t>(track.size()), 4);
    file.insert(file.end(), track.begin(), track.end());
    return file;
}

} // namespace kelo::engine
