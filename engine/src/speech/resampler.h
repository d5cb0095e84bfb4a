#pragma once

#include <memory>
#include <span>
#include <vector>

struct SpeexResamplerState_;

namespace kelo::engine {

/// Brings a stream of samples to another rate, without a delay: what is taken in at a time comes
/// out at that time. It looks a few milliseconds ahead, so the last of them come with `finish`.
class Resampler {
public:
    /// Samples a second, both whole numbers.
    Resampler(double from, double to);

    [[nodiscard]] std::vector<float> push(std::span<const float> samples);

    /// The rest, once nothing more is pushed.
    [[nodiscard]] std::vector<float> finish();

private:
    struct Destroy {
        void operator()(SpeexResamplerState_ *state) const;
    };

    std::unique_ptr<SpeexResamplerState_, Destroy> state_;
    double ratio_; ///< samples out for a sample in
};

} // namespace kelo::engine
