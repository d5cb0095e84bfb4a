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

    Band(Wire &lines, Instrument &instrument, const AudioClock &clock);

    void start();
    void stop();
    [[nodiscard]] bool on() const { return live; }

    void setStyle(Style value);
    [[nodiscard]] Style style() const { return current; }

    /// From the next bar on, kept within its bounds.
    void setTempo(int value);
    [[nodiscard]] int tempo() const { return wantedTempo; }

    /// From 0 to 127.
    void setLoudness(int value);
    [[nodiscard]] int loudness() const { return volume; }

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

    Wire &wire;
    Instrument &instrument;
    const AudioClock &clock;
    bool live = false;
    bool playing = false;
    Style current = Style::Full;
    int wantedTempo = 100;
    int tempoOfBar = 100;
    int volume = 100;
    std::vector<int> held;
    std::optional<Harmony> harmony;
    double lastKey = 0;
    Frame barStart = 0;
    std::int64_t bar = 0;
    int slot = 0; ///< the next eighth of the bar
    int bassPitch = -1; ///< that sounds
    double nextAdvance = 0;
};

} // namespace kelo::engine
