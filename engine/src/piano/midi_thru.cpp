#include "piano/midi_thru.h"

#include <algorithm>

namespace kelo::engine {

void MidiThru::setOn(bool value)
{
    if (active_ && !value)
        silence();
    active_ = value;
}

bool MidiThru::play(Frame frame, ChannelMessage message)
{
    if (!instrument_.play(frame, message))
        return false;
    // The piano's own sound is the one to be heard: no program, no volume, no drums.
    const bool note = message.kind() == 0x80 || message.kind() == 0x90
        || (message.kind() == 0xb0 && message.first == 64);
    if (active_ && note && message.channel() != 9 && waiting_.size() < mostWaiting) {
        const auto place = std::ranges::upper_bound(waiting_, frame, {}, &Waiting::frame);
        const auto kind = static_cast<unsigned char>(message.kind());
        waiting_.insert(place, {frame, {kind, message.first, message.second}});
    }
    return true;
}

void MidiThru::silence()
{
    constexpr ChannelMessage pedalUp{0xb0, 64, 0};
    constexpr ChannelMessage allNotesOff{0xb0, 123, 0};
    instrument_.silence();
    waiting_.clear();
    if (active_) {
        send_(pedalUp);
        send_(allNotesOff);
    }
}

void MidiThru::advance(double now)
{
    const Frame heard = audioClock_.frameAt(now);
    while (!waiting_.empty() && waiting_.front().frame <= heard) {
        send_(waiting_.front().message);
        waiting_.pop_front();
    }
}

std::optional<double> MidiThru::deadline() const
{
    if (waiting_.empty())
        return {};
    return audioClock_.timeOf(waiting_.front().frame);
}

} // namespace kelo::engine
