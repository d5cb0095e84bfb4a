#pragma once

#include "protocol/wire.h"
#include "sound/instrument.h"

#include <optional>

namespace kelo::engine {

/// Ticks by the clock of the sound itself and tells the display each beat as it is heard.
/// Times are seconds of the monotonic clock.
class Metronome {
public:
    static constexpr int slowest = 30; ///< beats a minute
    static constexpr int fastest = 300;

    Metronome(Wire &lines, Instrument &instrument, const AudioClock &clock);

    /// Ticks at `tempo` beats a minute, kept within its bounds, with an accent on the first of
    /// `beats`. When it ticks already the next beat comes in the new tempo.
    void start(int tempo, int beats, double now);
    /// The same, with the first beat of a bar at a certain time.
    void start(int tempo, int beats, double now, double firstBeat);
    /// Ticks one bar and stops.
    void countIn(int tempo, int beats, double now);
    void stop();

    [[nodiscard]] bool ticking() const { return running; }
    [[nodiscard]] int tempo() const { return beatsPerMinute; }
    [[nodiscard]] int beats() const { return beatsPerBar; }

    void advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

private:
    [[nodiscard]] Frame frameOf(std::int64_t beat) const;

    Wire &wire;
    Instrument &instrument;
    const AudioClock &clock;
    bool running = false;
    int beatsPerMinute = 90;
    int beatsPerBar = 4;
    Frame origin = 0; ///< of beat number 0 of this tempo
    std::optional<std::int64_t> lastBeat; ///< where it counts in
    int firstInBar = 0; ///< place in the bar of beat number 0
    std::int64_t nextTick = 0; ///< to be handed to the instrument
    std::int64_t nextBeat = 0; ///< to be told
    double nextSchedule = 0;
};

} // namespace kelo::engine
