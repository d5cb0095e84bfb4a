#pragma once

#include "midi/channel_message.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kelo::engine {

/// Finds the channel messages in the bytes that a MIDI device sends: running status, real-time
/// bytes in the middle of anything and system messages included.
class MidiStream {
public:
    [[nodiscard]] std::vector<ChannelMessage> feed(std::span<const std::uint8_t> bytes);

private:
    std::uint8_t status_ = 0; ///< 0: bytes that belong to nothing are passed over
    std::uint8_t first_ = 0;
    bool half_ = false; ///< the first of two data bytes is there
};

} // namespace kelo::engine
