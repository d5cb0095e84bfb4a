#include "piano/through.h"

#include <algorithm>

namespace kelo::engine {

void Through::setOn(bool value)
{
    if (active && !value)
        silence();
    active = value;
}

bool Through::play(Frame frame, ChannelMessage message)
{
    if (!instrument.play(frame, message))
        return false;
    // The piano's own sound is the one to be heard: no program, no volume, no drums.
    const bool note = message.kind() == 0x80 || message.kind() == 0x90
        || (message.kind() == 0xb0 && message.first == 64);
    if (active && note && message.channel() != 9 && waiting.size() < mostWaiting) {
        const auto place = std::ranges::upper_bound(waiting, frame, {}, &Waiting::frame);
        const auto kind = static_cast<unsigned char>(message.kind());
        waiting.insert(place, {frame, {kind, message.first, message.second}});
    }
    return true;
}

void Through::silence()
{
    constexpr ChannelMessage pedalUp{0xb0, 64, 0};
    constexpr ChannelMessage allNotesOff{0xb0, 123, 0};
    instrument.silence();
    waiting.clear();
    if (active) {
        send(pedalUp);
        send(allNotesOff);
    }
}

void Through::advance(double now)
{
    const Frame heard = audioClock.frameAt(now);
    while (!waiting.empty() && waiting.front().frame <= heard) {
        send(waiting.front().message);
        waiting.pop_front();
    }
}

std::optional<double> Through::deadline() const
{
    if (waiting.empty())
        return {};
    return audioClock.timeOf(waiting.front().frame);
}

} // namespace kelo::engine
