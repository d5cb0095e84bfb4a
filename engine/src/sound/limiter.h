#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace kelo::engine {

/// Keeps every sample within `ceiling`. It looks ahead, so that it turns down before a peak instead
/// of at it, and turns up again slowly; what comes out is `lookAhead` samples late. Both sides are
/// turned down alike, so nothing moves between them. Never allocates.
class Limiter {
public:
    static constexpr std::size_t lookAhead = 64; ///< samples, 1.5 ms
    static constexpr float ceiling = 0.94F; ///< half a dB below full scale

    /// In place.
    void process(std::span<float> left, std::span<float> right);

private:
    static constexpr std::size_t window = lookAhead + 1;

    [[nodiscard]] float smallestAhead(float gain);

    std::array<float, window> left_{};
    std::array<float, window> right_{};
    std::array<float, window> eased_{}; ///< gains of which the mean is taken
    double easedSum_ = 0;
    std::size_t at_ = 0; ///< of the sample that comes in, in all three
    bool begun_ = false;
    float released_ = 1;

    /// A candidate for the smallest gain of the window.
    struct Candidate {
        std::size_t number = 0;
        float gain = 1;
    };
    std::array<Candidate, window + 1> candidates_{}; ///< a ring, gains growing
    std::size_t first_ = 0;
    std::size_t count_ = 0;
    std::size_t number_ = 0; ///< of the sample that comes in
};

} // namespace kelo::engine
