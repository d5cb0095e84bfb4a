#include "training/metronome.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr double clicksAhead = 0.2;
constexpr double clicksEvery = 0.1;
constexpr double tooLate = 0.25; ///< beats that a sleeping machine missed stay silent
constexpr unsigned char drumPress = 0x99;
constexpr unsigned char highWoodBlock = 76;
constexpr unsigned char lowWoodBlock = 77;
constexpr unsigned char closedHat = 42;
constexpr unsigned char claves = 75;
constexpr unsigned char muteTriangle = 80;

} // namespace

Metronome::Metronome(Wire &wire, Instrument &instrument, const AudioClock &clock)
    : wire_(wire)
    , instrument_(instrument)
    , clock_(clock)
{
}

Frame Metronome::frameOfTick(std::int64_t tick) const
{
    // From the first tick, not from the last: nothing adds up.
    const auto beats = static_cast<double>(tick) / static_cast<double>(ticksPerBeat());
    return origin_ + static_cast<Frame>(std::llround(beats * 60 / beatsPerMinute_ * sampleRate));
}

Frame Metronome::frameOf(std::int64_t beat) const
{
    return frameOfTick(beat * ticksPerBeat());
}

void Metronome::start(int tempo, int beats, double now)
{
    if (running_)
        change(tempo, beats, parts_, now);
    else
        start(tempo, beats, now, now + soon);
}

void Metronome::divide(int parts, double now)
{
    if (running_)
        change(beatsPerMinute_, beatsPerBar_, parts, now);
    else
        parts_ = std::clamp(parts, 1, mostParts);
}

void Metronome::change(int tempo, int beats, int parts, double now)
{
    const bool begun = nextTick_ > 0;
    const std::int64_t handed = std::max<std::int64_t>(nextTick_ - 1, 0);
    const Frame last = std::max(frameOfTick(handed), clock_.frameAt(now));
    const std::int64_t beat = handed / ticksPerBeat();
    origin_ = frameOf(beat);
    firstInBar_ = static_cast<int>((firstInBar_ + beat) % beatsPerBar_);
    nextBeat_ -= beat;
    beatsPerMinute_ = std::clamp(tempo, slowest, fastest);
    beatsPerBar_ = std::clamp(beats, 1, 12);
    parts_ = std::clamp(parts, 1, mostParts);
    firstInBar_ %= beatsPerBar_;
    lastBeat_.reset();
    for (nextTick_ = begun ? 1 : 0; begun && frameOfTick(nextTick_) <= last;)
        ++nextTick_;
    advance(now);
}

void Metronome::start(int tempo, int beats, double now, double firstBeat)
{
    stop();
    running_ = true;
    beatsPerMinute_ = std::clamp(tempo, slowest, fastest);
    beatsPerBar_ = std::clamp(beats, 1, 12);
    origin_ = clock_.frameAt(firstBeat);
    firstInBar_ = 0;
    nextTick_ = nextBeat_ = 0;
    lastBeat_.reset();
    advance(now);
}

void Metronome::countIn(int tempo, int beats, double now)
{
    start(tempo, beats, now, now + clicksAhead); // nothing is handed on yet
    lastBeat_ = beatsPerBar_;
    advance(now);
}

void Metronome::stop()
{
    if (!running_)
        return;
    running_ = false;
    instrument_.silence();
}

void Metronome::give(Cue cue, double now)
{
    constexpr ChannelMessage yourTurn{drumPress, claves, 80};
    constexpr ChannelMessage right{drumPress, muteTriangle, 45};
    static_cast<void>(
        instrument_.play(clock_.frameAt(now), cue == Cue::YourTurn ? yourTurn : right));
}

ChannelMessage Metronome::soundOf(std::int64_t tick) const
{
    constexpr ChannelMessage accent{drumPress, highWoodBlock, 120};
    constexpr ChannelMessage beat{drumPress, lowWoodBlock, 90};
    constexpr ChannelMessage part{drumPress, closedHat, 60};
    if (tick % ticksPerBeat() != 0)
        return part;
    const bool first = (firstInBar_ + tick / ticksPerBeat()) % beatsPerBar_ == 0;
    return first && accented_ ? accent : beat;
}

void Metronome::advance(double now)
{
    if (!running_)
        return;
    const Frame heard = clock_.frameAt(now);
    const Frame until = clock_.frameAt(now + clicksAhead);
    const Frame missed = heard - frames(tooLate);
    for (; frameOfTick(nextTick_) < until && (!lastBeat_ || nextTick_ < *lastBeat_); ++nextTick_) {
        const Frame frame = frameOfTick(nextTick_);
        if (frame >= missed && !instrument_.play(frame, soundOf(nextTick_)))
            break;
    }
    for (; frameOf(nextBeat_) <= heard; ++nextBeat_) {
        if (nextBeat_ == lastBeat_) {
            stop();
            return;
        }
        if (nextBeat_ >= 0 && frameOf(nextBeat_) >= missed)
            wire_.send("beat", {static_cast<int>((firstInBar_ + nextBeat_) % beatsPerBar_)});
    }
    nextSchedule_ = now + clicksEvery;
}

std::optional<double> Metronome::deadline() const
{
    if (!running_)
        return {};
    return std::min(clock_.timeOf(frameOf(nextBeat_)), nextSchedule_);
}

} // namespace kelo::engine
