#include "piano/midi_stream.h"

namespace kelo::engine {

std::vector<ChannelMessage> MidiStream::feed(std::span<const std::uint8_t> bytes)
{
    std::vector<ChannelMessage> messages;
    for (const std::uint8_t byte : bytes) {
        if (byte >= 0xf8)
            continue;
        if (byte >= 0x80) {
            status = byte < 0xf0 ? byte : 0;
            half = false;
            continue;
        }
        if (status == 0)
            continue;
        const int kind = status & 0xf0;
        if (kind == 0xc0 || kind == 0xd0) {
            messages.push_back({status, byte, 0});
        } else if (half) {
            messages.push_back({status, first, byte});
            half = false;
        } else {
            first = byte;
            half = true;
        }
    }
    return messages;
}

} // namespace kelo::engine
