#pragma once

#include "music/message_feed.h"
#include "protocol/wire.h"
#include "sound/instrument.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kelo::engine {

/// Plays a piece: its notes to the instrument a little ahead of time, its piano
/// roll and every note to the display, in step with the sound. Times are
/// seconds of the monotonic clock. The display's keyboard shows no drums.
class Player {
public:
    Player(Wire &wire, Instrument &instrument, const AudioClock &clock);

    /// Shows the piece's roll and begins to play it after `leadIn` seconds.
    void start(SharedPiece piece, std::string name, double now);

    /// Plays an example soon, without a roll.
    void demonstrate(SharedPiece piece, double now);

    /// Plays what was started last from its beginning. Nothing without one.
    void again(double now);

    /// Goes on from another place of the piece, `position` seconds from its
    /// beginning.
    void seek(double position, double now);
    /// The place that is heard, in seconds of the piece as it is written.
    [[nodiscard]] double position(double now) const;
    /// When a place of the piece that plays is heard.
    [[nodiscard]] double timeOf(double position) const { return clock_.timeOf(frameOf(position)); }

    /// How fast: 1 is as written. What plays goes on from where it is.
    void setTempo(double factor, double now);
    [[nodiscard]] double tempo() const { return speed_; }

    /// Gets ready to be played key by key, by an accompaniment that waits, as loudly as `piece` is.
    void open(const Piece &piece);
    /// Presses a key at once, or releases it where `velocity` is 0.
    void touch(int pitch, int velocity);

    void pause(double now);
    void carryOn(double now);
    void stop();

    [[nodiscard]] bool playing() const { return state_ == State::Playing; }
    [[nodiscard]] bool paused() const { return state_ == State::Paused; }
    [[nodiscard]] bool hasPiece() const { return !piece_->notes.empty(); }

    void advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    static constexpr double leadIn = 3.0; ///< long enough to see the first notes fall
    static constexpr double demonstrationDelay = 0.3; ///< seconds until an example begins

private:
    enum class State { Stopped, Playing, Paused };

    /// A key that is lit, until its note ends.
    struct Lit {
        double until = 0;
        int pitch = 0;
    };

    void playFrom(double from, double delay, double now);
    void showRoll(double from);
    void tellRoll();
    void restoreChannels(double until);
    void halt();
    void light(double until);
    [[nodiscard]] Frame frameOf(double at) const { return origin_ + frames(at / speed_); }
    [[nodiscard]] double positionAt(double now) const;
    void prepare(SharedPiece piece);

    Wire &wire_;
    Instrument &instrument_;
    const AudioClock &clock_;
    State state_ = State::Stopped;
    SharedPiece piece_;
    std::string title_;
    bool shown_ = true; ///< its roll is on the display
    double speed_ = 1;
    Frame origin_ = 0; ///< sounds when the piece's time 0 does
    double pausedAt_ = 0; ///< where it was paused
    MessageFeed feed_; ///< what the instrument is to be told
    std::size_t nextNote_ = 0; ///< to be lit
    std::vector<Lit> lit_; ///< a heap, soonest end first
    std::size_t nextRollNote_ = 0; ///< to be told
    double rollFrom_ = 0;
    double nextSchedule_ = 0;
    std::array<int, 128> sounding_{}; ///< how many notes hold each key
};

} // namespace kelo::engine
