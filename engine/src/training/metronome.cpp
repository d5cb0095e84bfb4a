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

Metronome::Metronome(Wire &lines, Instrument &sound, const AudioClock &audioClock)
    : wire(lines)
    , instrument(sound)
    , clock(audioClock)
{
}

Frame Metronome::frameOf(std::int64_t beat) const
{
    // From the first beat, not from the last: nothing adds up.
    const double seconds = static_cast<double>(beat) * 60 / beatsPerMinute;
    return origin + static_cast<Frame>(std::llround(seconds * sampleRate));
}

void Metronome::start(int tempo, int beats, double now)
{
    if (!running) {
        start(tempo, beats, now, now + firstBeatDelay);
        return;
    }
    // The last beat that has been handed on is the first of the new tempo.
    const std::int64_t last = std::max<std::int64_t>(nextTick - 1, 0);
    origin = frameOf(last);
    firstInBar = static_cast<int>((firstInBar + last) % beatsPerBar);
    nextBeat -= last;
    nextTick = 1;
    beatsPerMinute = std::clamp(tempo, slowest, fastest);
    beatsPerBar = std::clamp(beats, 1, 12);
    firstInBar %= beatsPerBar;
    lastBeat.reset();
    advance(now);
}

void Metronome::start(int tempo, int beats, double now, double firstBeat)
{
    stop();
    running = true;
    beatsPerMinute = std::clamp(tempo, slowest, fastest);
    beatsPerBar = std::clamp(beats, 1, 12);
    origin = clock.frameAt(firstBeat);
    firstInBar = 0;
    nextTick = nextBeat = 0;
    lastBeat.reset();
    advance(now);
}

void Metronome::countIn(int tempo, int beats, double now)
{
    start(tempo, beats, now, now + clicksAhead); // nothing is handed on yet
    lastBeat = beatsPerBar;
    advance(now);
}

void Metronome::stop()
{
    if (!running)
        return;
    running = false;
    instrument.silence();
}

void Metronome::advance(double now)
{
    if (!running)
        return;
    const Frame heard = clock.frameAt(now);
    const Frame until = clock.frameAt(now + clicksAhead);
    const Frame missed = heard - frames(tooLate);
    for (; frameOf(nextTick) < until && (!lastBeat || nextTick < *lastBeat); ++nextTick) {
        if (frameOf(nextTick) < missed)
            continue;
        const bool accent = (firstInBar + nextTick) % beatsPerBar == 0;
        const ChannelMessage tick{drumPress, accent ? highWoodBlock : lowWoodBlock,
            static_cast<unsigned char>(accent ? 120 : 90)};
        if (!instrument.play(frameOf(nextTick), tick))
            break;
    }
    for (; frameOf(nextBeat) <= heard; ++nextBeat) {
        if (nextBeat == lastBeat) {
            stop();
            return;
        }
        if (nextBeat >= 0 && frameOf(nextBeat) >= missed)
            wire.send("beat", {static_cast<int>((firstInBar + nextBeat) % beatsPerBar)});
    }
    nextSchedule = now + clicksEvery;
}

std::optional<double> Metronome::deadline() const
{
    if (!running)
        return {};
    return std::min(clock.timeOf(frameOf(nextBeat)), nextSchedule);
}

} // namespace kelo::engine
