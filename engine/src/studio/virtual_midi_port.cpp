#include "studio/virtual_midi_port.h"

#include "log/log.h"

#include <RtMidi.h>

#include <mutex>
#include <utility>

namespace kelo::engine {

namespace {

constexpr const char *client = "Kelo"; // which is not taken for a keyboard

#ifdef __linux__
constexpr RtMidi::Api system = RtMidi::LINUX_ALSA;
#else
constexpr RtMidi::Api system = RtMidi::UNSPECIFIED;
#endif

constexpr std::size_t mostWaiting = 512;
constexpr std::size_t longestMessage = 1024;

} // namespace

struct VirtualMidiPort::Ports {
    Ports(const std::string &name, std::function<void()> ready)
        : notify(std::move(ready))
        , in(system, client)
        , out(system, client)
    {
        in.setErrorCallback(&report);
        out.setErrorCallback(&report);
        in.ignoreTypes(false, true, true); // surfaces are told of by system messages
        in.setCallback(&receive, this);
        in.openVirtualPort(name);
        out.openVirtualPort(name);
    }

    static void report(RtMidiError::Type, const std::string &text, void *)
    {
        log(LogLevel::Info, "studio", text);
    }

    static void receive(double, std::vector<unsigned char> *bytes, void *self)
    {
        auto &ports = *static_cast<Ports *>(self);
        if (bytes->empty() || bytes->size() > longestMessage)
            return;
        {
            const std::lock_guard lock(ports.mutex);
            if (ports.waiting.size() < mostWaiting)
                ports.waiting.push_back(*bytes);
        }
        ports.notify();
    }

    std::function<void()> notify;
    std::mutex mutex;
    std::vector<Message> waiting;
    RtMidiIn in;
    RtMidiOut out;
};

VirtualMidiPort::VirtualMidiPort(const std::string &name, std::function<void()> ready)
{
    try {
        ports_ = std::make_unique<Ports>(name, std::move(ready));
    } catch (const RtMidiError &error) {
        log(LogLevel::Info, "studio", error.getMessage());
    }
}

VirtualMidiPort::~VirtualMidiPort() = default;

void VirtualMidiPort::send(std::span<const std::uint8_t> message)
{
    if (ports_)
        ports_->out.sendMessage(message.data(), message.size());
}

std::vector<MidiPort::Message> VirtualMidiPort::take()
{
    if (!ports_)
        return {};
    const std::lock_guard lock(ports_->mutex);
    return std::exchange(ports_->waiting, {});
}

} // namespace kelo::engine
