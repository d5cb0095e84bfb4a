#include "voice/resampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelo {

namespace {

constexpr double reach = 16; // zero crossings on either side

double sinc(double x)
{
    return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

} // namespace

Resampler::Resampler(int rate)
    : rate_(rate)
    , step_(rate / sampleRate)
    , band_(std::min(1.0, 1 / step_))
    , radius_(reach / band_)
{
}

Samples Resampler::add(const Samples &samples)
{
    waiting_.insert(waiting_.end(), samples.begin(), samples.end());
    Samples result;
    for (; centre_ + radius_ < static_cast<double>(waiting_.size()); centre_ += step_) {
        const auto first = static_cast<std::size_t>(std::max(0.0, std::ceil(centre_ - radius_)));
        const auto last = static_cast<std::size_t>(std::floor(centre_ + radius_));
        double sum = 0;
        for (std::size_t k = first; k <= last; ++k) {
            const double distance = static_cast<double>(k) - centre_;
            const double window = 0.5 + 0.5 * std::cos(std::numbers::pi * distance / radius_);
            sum += waiting_[k] * band_ * sinc(distance * band_) * window;
        }
        result.push_back(static_cast<qint16>(std::clamp(std::lround(sum), -32768L, 32767L)));
    }
    const auto done = static_cast<std::size_t>(std::max(0.0, std::floor(centre_ - radius_)));
    waiting_.erase(waiting_.begin(),
        waiting_.begin() + static_cast<std::ptrdiff_t>(std::min(done, waiting_.size())));
    centre_ -= static_cast<double>(done);
    return result;
}

Samples Resampler::finish(const Samples &samples)
{
    Samples all = samples;
    all.resize(samples.size() + static_cast<std::size_t>(std::ceil(radius_)));
    return add(all);
}

} // namespace kelo
