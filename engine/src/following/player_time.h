#pragma once

namespace kelo::engine {

/// A player's own time: when their last step was, and how fast they go. A Kalman filter over both,
/// as A. T. Cemgil, B. Kappen, P. Desain and H. Honing track tempo ("On tempo tracking: Tempogram
/// representation and Kalman filtering", Journal of New Music Research 29, 2000): fingers err by
/// some hundredths of a second around a tempo that wanders slowly. Seconds throughout.
class PlayerTime {
public:
    /// Nobody knows beforehand how fast a player begins; `pace` is a guess.
    explicit PlayerTime(double pace = 1);

    /// The player is at the beginning of a step now.
    void begin(double now);
    /// The same after a break, after which they may go on faster or slower.
    void resume(double now);
    /// The player went on by so many written seconds and is there now.
    void step(double written, double now);
    /// Another key of the same step came now.
    void again(double now);

    /// When the player is expected after so many written seconds, and how far off that may be, as
    /// one standard deviation.
    [[nodiscard]] double expected(double written) const { return at_ + written * pace_; }
    [[nodiscard]] double uncertain(double written) const;
    /// Seconds that a written one takes.
    [[nodiscard]] double pace() const { return pace_; }

private:
    bool surprised(double written, double now);
    void correct(double now);

    double first_;
    double at_ = 0;
    double pace_;
    double atSpread_; ///< the variances of both, and what they have in common
    double paceSpread_;
    double common_ = 0;
    bool known_ = false; ///< something was learned of the pace
    bool surprised_ = false; ///< the last step came at no foreseeable time
};

} // namespace kelo::engine
