#pragma once

#include <vector>

namespace kelo {

/// Decides whether a crashed engine is worth another start: three crashes within two minutes
/// are forgiven, the next is not.
class CrashWindow {
public:
    /// A crash happened at `now` (seconds of uptime); true when the engine may be started again.
    [[nodiscard]] bool forgive(double now)
    {
        std::erase_if(crashes_, [now](double at) { return now - at >= windowSeconds; });
        const bool forgives = crashes_.size() < forgiven;
        if (forgives)
            crashes_.push_back(now);
        return forgives;
    }

private:
    static constexpr double windowSeconds = 120.0;
    static constexpr std::size_t forgiven = 3;

    std::vector<double> crashes_;
};

} // namespace kelo
