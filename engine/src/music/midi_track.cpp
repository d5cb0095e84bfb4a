#include "music/midi_track.h"

namespace kelo::engine {

namespace {

constexpr int tempoEvent = 0x51;
constexpr int nameEvent = 0x03;
constexpr int metreEvent = 0x58;
constexpr int keyEvent = 0x59;
constexpr int endEvent = 0x2f;
constexpr std::size_t longestName = 80; // bytes; what else is read of metas is shorter

std::uint8_t byteOf(const std::string &data, std::size_t place)
{
    return static_cast<std::uint8_t>(data[place]);
}

} // namespace

std::optional<MidiEvent> MidiTrack::next()
{
    while (state_ == State::Reading) {
        if (reader_.atEnd())
            return end(State::Broken);
        const std::uint32_t delta = reader_.variable();
        if (reader_.failed())
            return end(State::Broken);
        now_ += delta;
        const int first = reader_.peek();
        if (first == 0xff) {
            reader_.byte();
            const int kind = reader_.byte();
            const std::string data = reader_.text(reader_.variable(), longestName);
            if (reader_.failed())
                return end(State::Broken);
            if (kind == endEvent)
                return end(State::Ended);
            if (const auto event = meta(kind, data))
                return event;
            continue;
        }
        if (first == 0xf0 || first == 0xf7) {
            reader_.byte();
            reader_.skip(reader_.variable());
            running_ = 0;
            continue;
        }
        if (first >= 0x80)
            running_ = reader_.byte();
        if (running_ < 0x80 || running_ >= 0xf0)
            return end(State::Broken);
        ChannelMessage message{running_, reader_.byte(), 0};
        if (message.size() == 3)
            message.second = reader_.byte();
        if (reader_.failed() || ((message.first | message.second) & 0x80) != 0)
            return end(State::Broken);
        return MidiEvent{now_, number_, message};
    }
    return {};
}

std::optional<MidiEvent> MidiTrack::meta(int kind, const std::string &data) const
{
    if (kind == tempoEvent && data.size() == 3) {
        const int microseconds = byteOf(data, 0) << 16 | byteOf(data, 1) << 8 | byteOf(data, 2);
        if (microseconds > 0)
            return MidiEvent{.at = now_, .track = number_, .tempo = microseconds / 1e6};
    } else if (kind == metreEvent && data.size() >= 2 && byteOf(data, 0) > 0
        && byteOf(data, 1) <= 6) {
        return MidiEvent{
            .at = now_, .track = number_, .beats = byteOf(data, 0), .unit = 1 << byteOf(data, 1)};
    } else if (kind == keyEvent && !data.empty()) {
        return MidiEvent{.at = now_, .track = number_, .sharps = static_cast<std::int8_t>(data[0])};
    } else if (kind == nameEvent && !data.empty()) {
        return MidiEvent{.at = now_, .track = number_, .name = data};
    }
    return {};
}

/// The last event is that end.
MidiEvent MidiTrack::end(State state)
{
    state_ = state;
    return {now_, number_, {}};
}

MidiTracks::MidiTracks(std::vector<MidiTrack> tracks, bool oneAfterTheOther)
    : tracks_(std::move(tracks))
    , sequence_(oneAfterTheOther)
{
    for (std::size_t i = 0; i < tracks_.size(); ++i)
        read(i);
}

void MidiTracks::read(std::size_t track)
{
    if (auto event = tracks_[track].next()) {
        waiting_.push_back({std::move(*event), track});
        std::ranges::push_heap(waiting_, later());
    }
}

/// Tracks that follow each other are taken by their number, others by time.
auto MidiTracks::later() const -> Later
{
    return Later{sequence_};
}

std::optional<MidiEvent> MidiTracks::next()
{
    if (waiting_.empty())
        return {};
    std::ranges::pop_heap(waiting_, later());
    Waiting soonest = std::move(waiting_.back());
    waiting_.pop_back();
    read(soonest.track);
    if (sequence_) {
        if (soonest.track != current_) {
            current_ = soonest.track;
            offset_ = last_;
        }
        soonest.event.at += offset_;
    }
    last_ = soonest.event.at;
    return std::move(soonest.event);
}

bool MidiTracks::broken() const
{
    return std::ranges::any_of(tracks_, &MidiTrack::broken);
}

std::size_t MidiTracks::bytesLeft() const
{
    std::size_t left = 0;
    for (const MidiTrack &track : tracks_)
        left += track.bytesLeft();
    return left;
}

} // namespace kelo::engine
