#pragma once

#include "midi/channel_message.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kelo::engine {

using MidiBytes = std::span<const std::uint8_t>;
using Ticks = std::uint64_t;

/// Reads big-endian numbers from the front; past the end it has failed and gives zeros.
class MidiReader {
public:
    explicit MidiReader(MidiBytes all)
        : bytes_(all)
    {
    }

    [[nodiscard]] bool failed() const { return truncated_; }
    [[nodiscard]] bool atEnd() const { return bytes_.empty(); }

    [[nodiscard]] int peek() const { return bytes_.empty() ? -1 : bytes_.front(); }

    MidiBytes take(std::size_t count)
    {
        truncated_ = truncated_ || count > bytes_.size();
        const MidiBytes taken = bytes_.first(std::min(count, bytes_.size()));
        bytes_ = bytes_.subspan(taken.size());
        return taken;
    }

    std::uint32_t number(std::size_t size)
    {
        std::uint32_t value = 0;
        for (const std::uint8_t byte : take(size))
            value = value << 8 | byte;
        return value;
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(number(1)); }

    /// Seven bits a byte, four bytes at most.
    std::uint32_t variable()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const std::uint8_t next = byte();
            value = value << 7 | (next & 0x7fU);
            if ((next & 0x80) == 0)
                return value;
        }
        truncated_ = true;
        return value;
    }

private:
    MidiBytes bytes_;
    bool truncated_ = false;
};

/// What happens in a track.
struct MidiEvent {
    Ticks at = 0;
    int track = 0;
    ChannelMessage message{}; ///< status 0 where something else is meant, or the track's end
    double tempo = 0; ///< seconds a quarter note
    double bar = 0; ///< length of a bar from here on, in quarter notes
    std::optional<int> sharps{}; ///< of the key signature; below 0 flats
};

/// The events of a track up to its end, or to where it is damaged; the last one is that end.
void readTrack(MidiBytes bytes, int track, std::vector<MidiEvent> &events);

} // namespace kelo::engine
