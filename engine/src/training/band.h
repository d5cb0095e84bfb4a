#pragma once

#include "protocol/wire.h"
#include "sound/instrument.h"
#include "theory/harmony.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace kelo::engine {

/// A bass and drums that come in with the player's first chord, follow each chord from the next
/// half beat on, keep the tempo and rest when the player has long rested.
/// Times are seconds of the monotonic clock.
class Band {
public:
    enum class Style { Simple, Full };

    static constexpr int slowest = 50; ///< beats a minute
    static constexpr int fastest = 200;

    Band(Wire &wire, Instrument &instrument, const AudioClock &clock);

    void start();
    void stop();
    [[nodiscard]] bool on() const { return live_; }

    void setStyle(Style value);
    [[nodiscard]] Style style() const { return current_; }

    /// From the next bar on, kept within its bounds.
    void setTempo(int value);
    [[nodiscard]] int tempo() const { return wantedTempo_; }

    /// From 0 to 127.
    void setLoudness(int value);
    [[nodiscard]] int loudness() const { return volume_; }

    void key(int pitch, int velocity, double now);

    void advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

private:
    void comeIn(double now);
    void rest();
    void playSlot(Frame frame);
    void bass(Frame frame, int pitch, int velocity);
    void drum(Frame frame, int pitch, int velocity);
    void tellInstrument();
    [[nodiscard]] Frame slotFrame() const;
    [[nodiscard]] Frame slotLength() const;

    Wire &wire_;
    Instrument &instrument_;
    const AudioClock &clock_;
    bool live_ = false;
    bool playing_ = false;
    Style current_ = Style::Full;
    int wantedTempo_ = 100;
    int tempoOfBar_ = 100;
    int volume_ = 100;
    std::vector<int> held_;
    std::optional<Harmony> harmony_;
    double lastKey_ = 0;
    Frame barStart_ = 0;
    std::int64_t bar_ = 0;
    int slot_ = 0; ///< the next eighth of the bar
    int bassPitch_ = -1; ///< that sounds
    double nextAdvance_ = 0;
};

} // namespace kelo::engine
