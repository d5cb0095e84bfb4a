#include "voice/recognition/comfort_noise.h"

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

constexpr double toneBelow = 0.015; // 36 dB; with more, and with none, less is heard
constexpr double fading = 0.8; // a second
constexpr double quietest = 500; // of voices that are worth it

} // namespace

Samples ComfortNoise::under(Samples samples)
{
    const double faded = loudest_ * std::pow(fading, secondsOf(samples));
    loudest_ = std::max({levelOf(samples), faded, quietest});
    const double deviation = loudest_ * toneBelow;
    // Even noise is as good as any other, and cheap.
    std::uniform_real_distribution<double> noise(
        -std::sqrt(3.0) * deviation, std::sqrt(3.0) * deviation);
    for (qint16 &sample : samples) {
        sample =
            static_cast<qint16>(std::clamp(std::lround(sample + noise(random_)), -32768L, 32767L));
    }
    return samples;
}

} // namespace kelo
