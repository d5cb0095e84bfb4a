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
    static constexpr int mostParts = 4; ///< of a beat
    static constexpr double soon = 0.1; ///< seconds until the first beat

    Metronome(Wire &wire, Instrument &instrument, const AudioClock &clock);

    /// Ticks at `tempo` beats a minute, kept within its bounds, with an accent on the first of
    /// `beats`. When it ticks already the next beat comes in the new tempo.
    void start(int tempo, int beats, double now);
    /// The same, with the first beat of a bar at a certain time.
    void start(int tempo, int beats, double now, double firstBeat);
    /// Ticks one bar and stops.
    void countIn(int tempo, int beats, double now);
    void stop();

    /// Divides each beat into `parts`, which tick softly between the beats: 1 for none, 2 for
    /// eighths, 3 for triplets, 4 for sixteenths. A bar that is counted in has beats alone.
    void divide(int parts, double now);
    /// Whether the first beat of a bar differs from the others.
    void setAccent(bool on) { accented_ = on; }

    /// What a teacher tells by a sound.
    enum class Cue { YourTurn, Right };
    /// At once, beside whatever ticks.
    void give(Cue cue, double now);

    [[nodiscard]] bool ticking() const { return running_; }
    [[nodiscard]] int tempo() const { return beatsPerMinute_; }
    [[nodiscard]] int beats() const { return beatsPerBar_; }
    [[nodiscard]] int parts() const { return parts_; }
    [[nodiscard]] bool accented() const { return accented_; }

    void advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

private:
    /// From the last beat that has been handed on.
    void change(int tempo, int beats, int parts, double now);
    [[nodiscard]] std::int64_t ticksPerBeat() const { return lastBeat_ ? 1 : parts_; }
    [[nodiscard]] Frame frameOfTick(std::int64_t tick) const;
    [[nodiscard]] Frame frameOf(std::int64_t beat) const;
    [[nodiscard]] ChannelMessage soundOf(std::int64_t tick) const;

    Wire &wire_;
    Instrument &instrument_;
    const AudioClock &clock_;
    bool running_ = false;
    int beatsPerMinute_ = 90;
    int beatsPerBar_ = 4;
    int parts_ = 1; ///< of a beat
    bool accented_ = true;
    Frame origin_ = 0; ///< of beat number 0 of this tempo
    std::optional<std::int64_t> lastBeat_; ///< where it counts in
    int firstInBar_ = 0; ///< place in the bar of beat number 0
    std::int64_t nextTick_ = 0; ///< to be handed to the instrument; each part of a beat is one
    std::int64_t nextBeat_ = 0; ///< to be told
    double nextSchedule_ = 0;
};

} // namespace kelo::engine
