#include "piano/sequencer_source.h"

#include "protocol/text.h"

#include <algorithm>
#include <array>

namespace kelo::engine {

namespace {

/// Ports that no one plays on.
bool isKeyboard(const std::string &port)
{
    constexpr std::array<std::string_view, 4> others{"Midi Through", "RtMidi", "Kelo", "Timer"};
    return std::ranges::none_of(
        others, [&](std::string_view other) { return port.starts_with(other); });
}

/// "Stage Piano:Stage Piano MIDI 1 20:0" as people call it.
std::string spokenName(const std::string &port)
{
    return oneLine(std::string_view(port).substr(0, port.find(':')));
}

bool belongsTo(const std::string &port, int client)
{
    const auto numbers = port.rfind(' ');
    return numbers != std::string::npos
        && std::string_view(port).substr(numbers + 1).starts_with(std::to_string(client) + ":");
}

} // namespace

std::string_view SequencerSource::trouble() const
{
    return system_ ? "" : "I can't reach the MIDI system, so I won't hear your piano.";
}

bool SequencerSource::stirred()
{
    if (!system_)
        return false;
    const auto [stirred, gone] = system_->news();
    lost_ =
        lost_ || std::ranges::any_of(gone, [&](int client) { return belongsTo(port_, client); });
    return stirred;
}

bool SequencerSource::look()
{
    if (!system_)
        return false;
    const auto ports = system_->ports();
    const auto keyboard = std::ranges::find_if(ports, isKeyboard);
    const bool there = !port_.empty() && !lost_ && std::ranges::find(ports, port_) != ports.end();
    if (there || (port_.empty() && keyboard == ports.end()))
        return false;
    system_->close();
    port_.clear();
    lost_ = false;
    setName({});
    if (keyboard != ports.end()
        && system_->open(static_cast<std::size_t>(keyboard - ports.begin()))) {
        port_ = *keyboard;
        setName(spokenName(port_));
    }
    return true;
}

std::vector<ChannelMessage> SequencerSource::take()
{
    return system_ ? system_->take() : std::vector<ChannelMessage>{};
}

void SequencerSource::send(ChannelMessage message)
{
    if (system_)
        system_->send(message);
}

} // namespace kelo::engine
