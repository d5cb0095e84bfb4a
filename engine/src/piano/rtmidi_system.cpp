#include "log/log.h"
#include "piano/midi_system.h"
#include "piano/port_watch.h"
#include "sound/spsc_ring.h"

#include <RtMidi.h>

#include <array>

namespace kelo::engine {

namespace {

constexpr const char *clientName = "Kelo";

#ifdef __linux__
constexpr RtMidi::Api api = RtMidi::LINUX_ALSA;
#else
constexpr RtMidi::Api api = RtMidi::UNSPECIFIED;
#endif

class RtMidiSystem : public MidiSystem {
public:
    explicit RtMidiSystem(std::function<void()> ready)
        : ready_(std::move(ready))
        , in_(api, clientName)
        , out_(api, clientName)
    {
        in_.setErrorCallback(&report);
        out_.setErrorCallback(&report);
        in_.setCallback(&receive, this);
    }

    std::vector<std::string> ports() override
    {
        std::vector<std::string> all(in_.getPortCount());
        for (unsigned i = 0; i < all.size(); ++i)
            all[i] = in_.getPortName(i);
        return all;
    }

    bool open(std::size_t place) override
    {
        const auto number = static_cast<unsigned>(place);
        const std::string port = in_.getPortName(number);
        in_.openPort(number, "Piano in");
        const unsigned count = out_.getPortCount();
        for (unsigned i = 0; i < count && in_.isPortOpen() && !out_.isPortOpen(); ++i) {
            if (out_.getPortName(i) == port)
                out_.openPort(i, "Piano out");
        }
        return in_.isPortOpen();
    }

    void close() override
    {
        in_.closePort();
        out_.closePort();
    }

    News news() override { return watch_.take(); }
    [[nodiscard]] int file() const override { return watch_.file(); }

    std::vector<ChannelMessage> take() override
    {
        std::vector<ChannelMessage> messages;
        while (const ChannelMessage *message = played_.front()) {
            messages.push_back(*message);
            played_.pop();
        }
        return messages;
    }

    void send(ChannelMessage message) override
    {
        const std::array<unsigned char, 3> bytes{message.status, message.first, message.second};
        if (out_.isPortOpen())
            out_.sendMessage(bytes.data(), message.size());
    }

private:
    static void report(RtMidiError::Type type, const std::string &text, void *)
    {
        const bool harmless = type == RtMidiError::WARNING || type == RtMidiError::DEBUG_WARNING;
        log(harmless ? LogLevel::Info : LogLevel::Warning, "piano", text);
    }

    static void receive(double, std::vector<unsigned char> *bytes, void *self)
    {
        auto &system = *static_cast<RtMidiSystem *>(self);
        if (bytes->empty() || bytes->front() >= 0xf0)
            return;
        ChannelMessage message{bytes->front()};
        if (bytes->size() > 1)
            message.first = (*bytes)[1];
        if (bytes->size() > 2)
            message.second = (*bytes)[2];
        if (!system.played_.push(message))
            log(LogLevel::Warning, "piano", "a message is lost: too many are waiting");
        system.ready_();
    }

    std::function<void()> ready_;
    SpscRing<ChannelMessage, 4096> played_;
    RtMidiIn in_;
    RtMidiOut out_;
    PortWatch watch_;
};

} // namespace

std::unique_ptr<MidiSystem> systemMidi(std::function<void()> ready)
{
    try {
        return std::make_unique<RtMidiSystem>(std::move(ready));
    } catch (const RtMidiError &error) {
        log(LogLevel::Warning, "piano", error.getMessage());
        return {};
    }
}

} // namespace kelo::engine
