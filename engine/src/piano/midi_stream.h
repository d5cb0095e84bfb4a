#pragma once

#include "sound/synth.h"

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
    std::uint8_t status = 0; ///< 0: bytes that belong to nothing are passed over
    std::uint8_t first = 0;
    bool half = false; ///< the first of two data bytes is there
};

} // namespace kelo::engine
