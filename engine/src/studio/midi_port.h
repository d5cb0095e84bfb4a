#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kelo::engine {

/// A line of MIDI to another program, whole messages at a time.
class MidiPort {
public:
    using Message = std::vector<std::uint8_t>;

    virtual ~MidiPort() = default;

    virtual void send(std::span<const std::uint8_t> message) = 0;

    /// What has come since the last call, oldest first.
    [[nodiscard]] virtual std::vector<Message> take() = 0;
};

} // namespace kelo::engine
