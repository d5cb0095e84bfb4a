#pragma once

#include "piano/midi_stream.h"
#include "piano/piano.h"

namespace kelo::engine {

/// Where a piano may be found.
class Piano::Source {
public:
    Source() = default;
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;
    virtual ~Source() = default;

    /// Opens what is there and lets go of what is not; true when that has changed anything.
    virtual bool look() = 0;
    [[nodiscard]] virtual std::string_view trouble() const { return {}; }
    [[nodiscard]] virtual int file() const { return -1; }
    [[nodiscard]] virtual std::vector<ChannelMessage> take() = 0;
    virtual void send(ChannelMessage message) = 0;

    std::string name; ///< of the piano; empty while there is none
};

/// The ports of the system's MIDI sequencer.
class Piano::Sequencer : public Piano::Source {
public:
    explicit Sequencer(std::function<void()> ready);
    ~Sequencer() override;

    bool look() override;
    [[nodiscard]] std::string_view trouble() const override;
    [[nodiscard]] std::vector<ChannelMessage> take() override;
    void send(ChannelMessage message) override;

private:
    struct Ports;
    void connect(unsigned number);

    std::unique_ptr<Ports> ports;
    bool refused = false;
};

/// A device file whose bytes are MIDI.
class Piano::RawDevice : public Piano::Source {
public:
    explicit RawDevice(std::string devicePath)
        : path(std::move(devicePath))
    {
    }
    ~RawDevice() override;

    bool look() override;
    [[nodiscard]] int file() const override { return descriptor; }
    [[nodiscard]] std::vector<ChannelMessage> take() override;
    void send(ChannelMessage message) override;

private:
    void close();

    std::string path;
    int descriptor = -1;
    bool writable = false;
    bool gone = false;
    MidiStream stream;
};

} // namespace kelo::engine
