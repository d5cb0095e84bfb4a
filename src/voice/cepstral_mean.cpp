#include "voice/cepstral_mean.h"

#include <algorithm>

namespace kelo {

void CepstralMean::takeFrom(std::span<float> frame)
{
    constexpr double remembered = 3000; // frames
    frames_ = std::min(frames_ + 1, remembered);
    for (std::size_t i = 0; i < std::min(frame.size(), mean_.size()); ++i) {
        mean_[i] += (static_cast<double>(frame[i]) - mean_[i]) / frames_;
        frame[i] -= static_cast<float>(mean_[i]);
    }
}

} // namespace kelo
