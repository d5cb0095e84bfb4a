#pragma once

#include "sound/section.h"

#include <deque>
#include <functional>
#include <optional>

namespace kelo::engine {

/// An instrument that is also played on the piano itself, when that is wanted, each message
/// when it sounds. Seconds of the monotonic clock.
class Through : public Instrument {
public:
    using Send = std::function<void(ChannelMessage message)>;

    Through(Instrument &speakers, const AudioClock &clock, Send toPiano)
        : instrument(speakers)
        , audioClock(clock)
        , send(std::move(toPiano))
    {
    }

    void setOn(bool value);
    [[nodiscard]] bool on() const { return active; }

    bool play(Frame frame, ChannelMessage message) override;
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

    Instrument &instrument;
    const AudioClock &audioClock;
    Send send;
    bool active = false;
    std::deque<Waiting> waiting; ///< soonest first
};

} // namespace kelo::engine
