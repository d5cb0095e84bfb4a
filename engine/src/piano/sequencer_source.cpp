#include "piano/sequencer_source.h"

#include "log/log.h"
#include "protocol/text.h"
#include "sound/spsc_ring.h"

#include <RtMidi.h>

#include <algorithm>
#include <array>
#include <optional>

namespace kelo::engine {

namespace {

constexpr const char *clientName = "Kelo";

#ifdef __linux__
constexpr RtMidi::Api api = RtMidi::LINUX_ALSA;
#else
constexpr RtMidi::Api api = RtMidi::UNSPECIFIED;
#endif

/// Ports that no one plays on.
bool isKeyboard(const std::string &port)
{
    constexpr std::array<std::string_view, 4> others{"Midi Through", "RtMidi", clientName, "Timer"};
    return std::ranges::none_of(
        others, [&](std::string_view other) { return port.starts_with(other); });
}

/// "Stage Piano:Stage Piano MIDI 1 20:0" as people call it.
std::string spokenName(const std::string &port)
{
    return oneLine(std::string_view(port).substr(0, port.find(':')));
}

} // namespace

struct SequencerSource::Ports {
    explicit Ports(std::function<void()> ready)
        : notify(std::move(ready))
        , in(api, clientName)
        , out(api, clientName)
    {
        in.setErrorCallback(&report);
        out.setErrorCallback(&report);
        in.setCallback(&receive, this);
    }

    static void report(RtMidiError::Type type, const std::string &text, void *)
    {
        const bool harmless = type == RtMidiError::WARNING || type == RtMidiError::DEBUG_WARNING;
        log(harmless ? LogLevel::Info : LogLevel::Warning, "piano", text);
    }

    static void receive(double, std::vector<unsigned char> *bytes, void *self)
    {
        auto &ports = *static_cast<Ports *>(self);
        if (bytes->empty() || bytes->front() >= 0xf0)
            return;
        ChannelMessage message{bytes->front()};
        if (bytes->size() > 1)
            message.first = (*bytes)[1];
        if (bytes->size() > 2)
            message.second = (*bytes)[2];
        if (!ports.played.push(message))
            log(LogLevel::Warning, "piano", "a message is lost: too many are waiting");
        ports.notify();
    }

    std::function<void()> notify;
    SpscRing<ChannelMessage, 4096> played;
    RtMidiIn in;
    RtMidiOut out;
    std::string port; ///< the full name of the port that is open
};

SequencerSource::SequencerSource(std::function<void()> ready)
{
    try {
        ports_ = std::make_unique<Ports>(std::move(ready));
    } catch (const RtMidiError &error) {
        refused_ = true;
        log(LogLevel::Warning, "piano", error.getMessage());
    }
}

SequencerSource::~SequencerSource() = default;

std::string_view SequencerSource::trouble() const
{
    return refused_ ? "I can't reach the MIDI system, so I won't hear your piano." : "";
}

bool SequencerSource::look()
{
    if (!ports_)
        return false;
    std::optional<unsigned> first;
    bool there = false;
    const unsigned count = ports_->in.getPortCount();
    for (unsigned i = 0; i < count; ++i) {
        const std::string port = ports_->in.getPortName(i);
        there = there || (!ports_->port.empty() && port == ports_->port);
        if (!first && isKeyboard(port))
            first = i;
    }
    if (there || (ports_->port.empty() && !first))
        return false;
    ports_->in.closePort();
    ports_->out.closePort();
    ports_->port.clear();
    setName({});
    if (first)
        connect(*first);
    return true;
}

void SequencerSource::connect(unsigned number)
{
    const std::string port = ports_->in.getPortName(number);
    ports_->in.openPort(number, "Piano in");
    if (!ports_->in.isPortOpen())
        return;
    ports_->port = port;
    setName(spokenName(port));
    const unsigned count = ports_->out.getPortCount();
    for (unsigned i = 0; i < count; ++i) {
        if (ports_->out.getPortName(i) == port) {
            ports_->out.openPort(i, "Piano out");
            return;
        }
    }
}

std::vector<ChannelMessage> SequencerSource::take()
{
    std::vector<ChannelMessage> messages;
    while (ports_) {
        const ChannelMessage *message = ports_->played.front();
        if (!message)
            break;
        messages.push_back(*message);
        ports_->played.pop();
    }
    return messages;
}

void SequencerSource::send(ChannelMessage message)
{
    if (!ports_ || !ports_->out.isPortOpen())
        return;
    const std::array<unsigned char, 3> bytes{message.status, message.first, message.second};
    const bool two = message.kind() == 0xc0 || message.kind() == 0xd0;
    ports_->out.sendMessage(bytes.data(), two ? 2 : 3);
}

} // namespace kelo::engine
