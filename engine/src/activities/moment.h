#pragma once

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <optional>

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

/// The first of the times that there are.
[[nodiscard]] inline std::optional<double> earliest(
    std::initializer_list<std::optional<double>> times)
{
    std::optional<double> first;
    for (const auto &time : times) {
        if (time)
            first = std::min(first.value_or(*time), *time);
    }
    return first;
}

} // namespace kelo::engine
