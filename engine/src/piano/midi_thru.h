#pragma once

#include "sound/instrument.h"

#include <deque>
#include <functional>
#include <optional>

namespace kelo::engine {

/// An instrument that is also played on the piano itself, when that is wanted, each message
/// when it sounds. Seconds of the monotonic clock.
class MidiThru : public Instrument {
public:
    using Send = std::function<void(ChannelMessage message)>;

    MidiThru(Instrument &speakers, const AudioClock &clock, Send toPiano)
        : instrument_(speakers)
        , audioClock_(clock)
        , send_(std::move(toPiano))
    {
    }

    void setOn(bool value);
    [[nodiscard]] bool on() const { return active_; }

    bool play(Frame frame, ChannelMessage message) override;
    void setGain(float gain) override { instrument_.setGain(gain); }
    void silence() override;

    /// Passes on what is due.
    void advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

private:
    struct Waiting {
        Frame frame = 0;
        ChannelMessage message;
    };

    static constexpr std::size_t mostWaiting = 4096;

    Instrument &instrument_;
    const AudioClock &audioClock_;
    Send send_;
    bool active_ = false;
    std::deque<Waiting> waiting_; ///< soonest first
};

} // namespace kelo::engine
