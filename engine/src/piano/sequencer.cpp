#include "piano/source.h"
#include "protocol/text.h"
#include "sound/spsc_ring.h"

#include <RtMidi.h>

#include <algorithm>
#include <array>

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

struct Piano::Sequencer::Ports {
    explicit Ports(std::function<void()> ready)
        : notify(std::move(ready))
        , in(api, clientName)
        , out(api, clientName)
    {
        in.setErrorCallback(&ignore);
        out.setErrorCallback(&ignore);
        in.setCallback(&receive, this);
    }

    static void ignore(RtMidiError::Type, const std::string &, void *) { }

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
        static_cast<void>(ports.played.push(message));
        ports.notify();
    }

    std::function<void()> notify;
    SpscRing<ChannelMessage, 4096> played;
    RtMidiIn in;
    RtMidiOut out;
    std::string port; ///< the full name of the port that is open
};

Piano::Sequencer::Sequencer(std::function<void()> ready)
{
    try {
        ports = std::make_unique<Ports>(std::move(ready));
    } catch (const RtMidiError &) {
        refused = true;
    }
}

Piano::Sequencer::~Sequencer() = default;

std::string_view Piano::Sequencer::trouble() const
{
    return refused ? "I can't reach the MIDI system, so I won't hear your piano." : "";
}

bool Piano::Sequencer::look()
{
    if (!ports)
        return false;
    std::optional<unsigned> first;
    bool there = false;
    const unsigned count = ports->in.getPortCount();
    for (unsigned i = 0; i < count; ++i) {
        const std::string port = ports->in.getPortName(i);
        there = there || (!ports->port.empty() && port == ports->port);
        if (!first && isKeyboard(port))
            first = i;
    }
    if (there || (ports->port.empty() && !first))
        return false;
    ports->in.closePort();
    ports->out.closePort();
    ports->port.clear();
    name.clear();
    if (first)
        connect(*first);
    return true;
}

void Piano::Sequencer::connect(unsigned number)
{
    const std::string port = ports->in.getPortName(number);
    ports->in.openPort(number, "Piano in");
    if (!ports->in.isPortOpen())
        return;
    ports->port = port;
    name = spokenName(port);
    const unsigned count = ports->out.getPortCount();
    for (unsigned i = 0; i < count; ++i) {
        if (ports->out.getPortName(i) == port) {
            ports->out.openPort(i, "Piano out");
            return;
        }
    }
}

std::vector<ChannelMessage> Piano::Sequencer::take()
{
    std::vector<ChannelMessage> messages;
    while (ports) {
        const ChannelMessage *message = ports->played.front();
        if (!message)
            break;
        messages.push_back(*message);
        ports->played.pop();
    }
    return messages;
}

void Piano::Sequencer::send(ChannelMessage message)
{
    if (!ports || !ports->out.isPortOpen())
        return;
    const std::array<unsigned char, 3> bytes{message.status, message.first, message.second};
    const bool two = message.kind() == 0xc0 || message.kind() == 0xd0;
    ports->out.sendMessage(bytes.data(), two ? 2 : 3);
}

} // namespace kelo::engine
