#pragma once

#include "studio/midi_port.h"

#include <functional>
#include <memory>
#include <string>

namespace kelo::engine {

/// A port of our own that other programs can connect to, where the MIDI system has such; elsewhere
/// nothing ever comes and nobody hears.
class VirtualMidiPort : public MidiPort {
public:
    /// `ready` is called on a thread of its own when there is something to `take`.
    VirtualMidiPort(const std::string &name, std::function<void()> ready);
    ~VirtualMidiPort() override;
    VirtualMidiPort(const VirtualMidiPort &) = delete;
    VirtualMidiPort &operator=(const VirtualMidiPort &) = delete;

    void send(std::span<const std::uint8_t> message) override;
    [[nodiscard]] std::vector<Message> take() override;

private:
    struct Ports;

    std::unique_ptr<Ports> ports_;
};

} // namespace kelo::engine
