#pragma once

#include <chrono>

namespace kelo::engine {

/// Seconds of the monotonic clock that everything in the engine is timed by.
[[nodiscard]] inline double monotonicNow()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace kelo::engine
