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

    Metronome(Wire &wire, Instrument &instrument, const AudioClock &clock);

    /// Ticks at `tempo` beats a minute, kept within its bounds, with an accent on the first of
    /// `beats`. When it ticks already the next beat comes in the new tempo.
    void start(int tempo, int beats, double now);
    /// The same, with the first beat of a bar at a certain time.
    void start(int tempo, int beats, double now, double firstBeat);
    /// Ticks one bar and stops.
    void countIn(int tempo, int beats, double now);
    void stop();

    [[nodiscard]] bool ticking() const { return running_; }
    [[nodiscard]] int tempo() const { return beatsPerMinute_; }
    [[nodiscard]] int beats() const { return beatsPerBar_; }

    void advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

private:
    [[nodiscard]] Frame frameOf(std::int64_t beat) const;

    Wire &wire_;
    Instrument &instrument_;
    const AudioClock &clock_;
    bool running_ = false;
    int beatsPerMinute_ = 90;
    int beatsPerBar_ = 4;
    Frame origin_ = 0; ///< of beat number 0 of this tempo
    std::optional<std::int64_t> lastBeat_; ///< where it counts in
    int firstInBar_ = 0; ///< place in the bar of beat number 0
    std::int64_t nextTick_ = 0; ///< to be handed to the instrument
    std::int64_t nextBeat_ = 0; ///< to be told
    double nextSchedule_ = 0;
};

} // namespace kelo::engine
