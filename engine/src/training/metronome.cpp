#include "training/metronome.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr double clicksAhead = 0.2;
constexpr double clicksEvery = 0.1;
constexpr double tooLate = 0.25; ///< beats that a sleeping machine missed stay silent
constexpr double firstBeatDelay = 0.1;
constexpr unsigned char drumPress = 0x99;
constexpr unsigned char highWoodBlock = 76;
constexpr unsigned char lowWoodBlock = 77;

} // namespace

Metronome::Metronome(Wire &wire, Instrument &instrument, const AudioClock &clock)
    : wire_(wire)
    , instrument_(instrument)
    , clock_(clock)
{
}

Frame Metronome::frameOf(std::int64_t beat) const
{
    // From the first beat, not from the last: nothing adds up.
    const double seconds = static_cast<double>(beat) * 60 / beatsPerMinute_;
    return origin_ + static_cast<Frame>(std::llround(seconds * sampleRate));
}

void Metronome::start(int tempo, int beats, double now)
{
    if (!running_) {
        start(tempo, beats, now, now + firstBeatDelay);
        return;
    }
    // The last beat that has been handed on is the first of the new tempo.
    const std::int64_t last = std::max<std::int64_t>(nextTick_ - 1, 0);
    origin_ = frameOf(last);
    firstInBar_ = static_cast<int>((firstInBar_ + last) % beatsPerBar_);
    nextBeat_ -= last;
    nextTick_ = 1;
    beatsPerMinute_ = std::clamp(tempo, slowest, fastest);
    beatsPerBar_ = std::clamp(beats, 1, 12);
    firstInBar_ %= beatsPerBar_;
    lastBeat_.reset();
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

void Metronome::advance(double now)
{
    if (!running_)
        return;
    const Frame heard = clock_.frameAt(now);
    const Frame until = clock_.frameAt(now + clicksAhead);
    const Frame missed = heard - frames(tooLate);
    for (; frameOf(nextTick_) < until && (!lastBeat_ || nextTick_ < *lastBeat_); ++nextTick_) {
        if (frameOf(nextTick_) < missed)
            continue;
        const bool accent = (firstInBar_ + nextTick_) % beatsPerBar_ == 0;
        const ChannelMessage tick{drumPress, accent ? highWoodBlock : lowWoodBlock,
            static_cast<unsigned char>(accent ? 120 : 90)};
        if (!instrument_.play(frameOf(nextTick_), tick))
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
