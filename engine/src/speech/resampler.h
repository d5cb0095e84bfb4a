#pragma once

#include <array>
#include <span>
#include <vector>

namespace kelo::engine {

/// Brings a stream of samples to another rate by cubic interpolation; smooth enough for speech.
class Resampler {
public:
    Resampler(double from, double to)
        : step(from / to)
    {
    }

    [[nodiscard]] std::vector<float> push(std::span<const float> samples);

private:
    double step;
    double phase = 0; ///< between the middle two of the last four samples
    std::array<float, 4> last{};
};

} // namespace kelo::engine
