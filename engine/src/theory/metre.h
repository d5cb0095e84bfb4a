#pragma once

namespace kelo::engine {

/// A time signature.
struct Metre {
    int beats = 4; ///< in a bar
    int unit = 4; ///< 4 is a quarter, 8 an eighth

    friend bool operator==(const Metre &, const Metre &) = default;
};

/// The length of a bar in quarters: 3 for six eighths.
[[nodiscard]] constexpr double quartersIn(const Metre &metre)
{
    return metre.beats * 4.0 / metre.unit;
}

} // namespace kelo::engine
