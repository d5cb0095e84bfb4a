#pragma once

#include <optional>

namespace kelo {

/// What motion for its own sake may do: the ring's breath and arcs, the drift of the grid.
enum class Drift {
    Always, ///< drawing costs next to nothing
    WhileLively, ///< each frame costs the processor's time: it rests when nothing happens
    Never, ///< the user does not want it
};

/// The time that motion for its own sake goes by. It runs as the clock does. Where it may rest, it
/// does so a while after the latest event: slower and slower until it stands, so that a display
/// that nobody disturbs costs nothing. What happens next sets it going again. It never leaps.
class MotionTime {
public:
    /// Something happened at uptime `now` that is worth moving for.
    void disturb(double now);
    /// Brings it to uptime `now`.
    void advance(double now, Drift drift);

    /// Seconds; behind the uptime by as much as it has stood.
    [[nodiscard]] double now() const { return now_; }
    /// How fast it runs: 1 is as fast as the clock.
    [[nodiscard]] double pace() const { return part_ * part_ * (3 - 2 * part_); }
    /// Something happened only just now: motion answers it.
    [[nodiscard]] bool isLively() const;
    [[nodiscard]] bool isAtRest() const { return part_ <= 0 && !awake_; }

private:
    std::optional<double> last_; // uptime
    double disturbed_ = 0; // uptime of the latest disturbance
    double now_ = 0;
    double part_ = 1; // of the way from rest to full pace
    bool awake_ = true;
};

} // namespace kelo
