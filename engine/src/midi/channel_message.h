#pragma once

#include <cstddef>

namespace kelo::engine {

/// A MIDI channel message as it stands in a file or comes from a keyboard.
struct ChannelMessage {
    unsigned char status = 0; ///< kind in the high half, channel in the low one
    unsigned char first = 0;
    unsigned char second = 0;

    [[nodiscard]] constexpr int channel() const { return status & 0x0f; }
    [[nodiscard]] constexpr int kind() const { return status & 0xf0; }

    /// A key that is let go of, written either way.
    [[nodiscard]] constexpr bool releases() const
    {
        return kind() == 0x80 || (kind() == 0x90 && second == 0);
    }
    [[nodiscard]] constexpr bool presses() const { return kind() == 0x90 && second > 0; }

    /// Bytes of the message with its status.
    [[nodiscard]] constexpr std::size_t size() const
    {
        return kind() == 0xc0 || kind() == 0xd0 ? 2 : 3;
    }

    friend bool operator==(const ChannelMessage &, const ChannelMessage &) = default;
};

} // namespace kelo::engine
