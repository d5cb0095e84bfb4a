#include "sound/limiter.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr float releasePerSample = 1.0F / 4410; ///< of the way back each sample: 0.1 s

} // namespace

/// The smallest gain of the last `window` samples.
float Limiter::smallestAhead(float gain)
{
    const auto slot = [this](std::size_t i) -> Candidate & {
        return candidates_[(first_ + i) % candidates_.size()];
    };
    while (count_ > 0 && slot(count_ - 1).gain >= gain)
        --count_;
    slot(count_++) = {number_, gain};
    if (slot(0).number + window <= number_) {
        first_ = (first_ + 1) % candidates_.size();
        --count_;
    }
    ++number_;
    return slot(0).gain;
}

void Limiter::process(std::span<float> left, std::span<float> right)
{
    if (!begun_) {
        eased_.fill(1);
        easedSum_ = static_cast<double>(window);
        begun_ = true;
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        const float peak = std::max(std::abs(left[i]), std::abs(right[i]));
        const float smallest = smallestAhead(peak > ceiling ? ceiling / peak : 1.0F);
        released_ = std::min(smallest, released_ + (1 - released_) * releasePerSample);
        left_[at_] = left[i];
        right_[at_] = right[i];
        easedSum_ += static_cast<double>(released_) - static_cast<double>(eased_[at_]);
        eased_[at_] = released_;
        at_ = (at_ + 1) % window; // the oldest sample
        const auto gain = static_cast<float>(easedSum_ / static_cast<double>(window));
        left[i] = std::clamp(gain * left_[at_], -ceiling, ceiling); // rounding alone is cut
        right[i] = std::clamp(gain * right_[at_], -ceiling, ceiling);
    }
}

} // namespace kelo::engine
