#pragma once

#include "midi/midi_stream.h"
#include "piano/keyboard_source.h"

namespace kelo::engine {

/// A device file, or a pipe, whose bytes are MIDI.
class RawDeviceSource : public KeyboardSource {
public:
    explicit RawDeviceSource(std::string devicePath)
        : path_(std::move(devicePath))
    {
    }
    ~RawDeviceSource() override;

    bool look() override;
    [[nodiscard]] bool stirred() override { return gone_; }
    [[nodiscard]] int file() const override { return descriptor_; }
    [[nodiscard]] std::vector<ChannelMessage> take() override;
    void send(ChannelMessage message) override;

private:
    void close();
    [[nodiscard]] bool replaced() const;

    std::string path_;
    int descriptor_ = -1;
    bool writable_ = false;
    bool gone_ = false;
    bool refused_ = false; ///< that has been logged
    MidiStream stream_;
};

} // namespace kelo::engine
