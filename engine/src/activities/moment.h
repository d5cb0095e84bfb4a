#pragma once

#include <chrono>

namespace kelo::engine {

/// A moment: seconds of the monotonic clock, and the local date and time.
struct Moment {
    double uptime = 0;
    std::chrono::local_seconds local{};

    [[nodiscard]] std::chrono::year_month_day today() const
    {
        return std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(local));
    }
    [[nodiscard]] int hour() const { return minuteOfDay() / 60; }
    [[nodiscard]] int minute() const { return minuteOfDay() % 60; }

    [[nodiscard]] int minuteOfDay() const
    {
        const auto midnight = std::chrono::floor<std::chrono::days>(local);
        return static_cast<int>(
            std::chrono::duration_cast<std::chrono::minutes>(local - midnight).count());
    }
};

} // namespace kelo::engine
