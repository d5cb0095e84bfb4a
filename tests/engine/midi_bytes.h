#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// Writes Standard MIDI Files, well-formed ones and others.
namespace midi {

using Bytes = std::vector<std::uint8_t>;

inline Bytes join(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline Bytes number(std::uint32_t value, int size)
{
    Bytes bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    return bytes;
}

inline Bytes chunk(const std::string &name, const Bytes &body)
{
    return join({Bytes(name.begin(), name.end()),
        number(static_cast<std::uint32_t>(body.size()), 4), body});
}

inline Bytes header(int format, int tracks, int division)
{
    const auto word = [](int value) { return number(static_cast<std::uint32_t>(value), 2); };
    return chunk("MThd", join({word(format), word(tracks), word(division)}));
}

inline Bytes track(const Bytes &events)
{
    return chunk("MTrk", events);
}

/// A delta time below 16384 ticks and an event.
inline Bytes at(int delta, const Bytes &event)
{
    if (delta < 128)
        return join({{static_cast<std::uint8_t>(delta)}, event});
    return join(
        {{static_cast<std::uint8_t>(0x80 | delta >> 7), static_cast<std::uint8_t>(delta & 0x7f)},
            event});
}

inline Bytes tempo(std::uint32_t microseconds)
{
    return join({{0xff, 0x51, 3}, number(microseconds, 3)});
}

inline const Bytes end{0, 0xff, 0x2f, 0};

/// `count` notes of half a second each, upwards from `pitch`, at 480 ticks a quarter note.
inline Bytes scaleTrack(int count, std::uint8_t pitch = 60)
{
    Bytes events;
    for (int i = 0; i < count; ++i) {
        const auto key = static_cast<std::uint8_t>(pitch + i % 40);
        const Bytes note = join({at(0, {0x90, key, 80}), at(480, {0x80, key, 0})});
        events.insert(events.end(), note.begin(), note.end());
    }
    return track(join({events, end}));
}
inline Bytes scale(int count, std::uint8_t pitch = 60)
{
    return join({header(0, 1, 480), scaleTrack(count, pitch)});
}

/// A RIFF file with an odd chunk before its data.
inline Bytes riff(const std::string &form, const Bytes &data)
{
    const auto small = [](std::size_t size) {
        return Bytes{static_cast<std::uint8_t>(size), static_cast<std::uint8_t>(size >> 8), 0, 0};
    };
    return join({{'R', 'I', 'F', 'F'}, small(data.size() + 26), Bytes(form.begin(), form.end()),
        {'D', 'I', 'S', 'P', 3, 0, 0, 0, 1, 2, 3, 0}, {'d', 'a', 't', 'a'}, small(data.size()),
        data});
}

} // namespace midi
