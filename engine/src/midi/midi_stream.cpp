#include "midi/midi_stream.h"

namespace kelo::engine {

std::vector<ChannelMessage> MidiStream::feed(std::span<const std::uint8_t> bytes)
{
    std::vector<ChannelMessage> messages;
    for (const std::uint8_t byte : bytes) {
        if (byte >= 0xf8)
            continue;
        if (byte >= 0x80) {
            status_ = byte < 0xf0 ? byte : 0;
            half_ = false;
            continue;
        }
        if (status_ == 0)
            continue;
        const int kind = status_ & 0xf0;
        if (kind == 0xc0 || kind == 0xd0) {
            messages.push_back({status_, byte, 0});
        } else if (half_) {
            messages.push_back({status_, first_, byte});
            half_ = false;
        } else {
            first_ = byte;
            half_ = true;
        }
    }
    return messages;
}

} // namespace kelo::engine
