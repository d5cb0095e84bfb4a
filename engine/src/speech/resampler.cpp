#include "speech/resampler.h"

namespace kelo::engine {

std::vector<float> Resampler::push(std::span<const float> samples)
{
    std::vector<float> out;
    out.reserve(static_cast<std::size_t>(static_cast<double>(samples.size()) / step) + 2);
    for (const float sample : samples) {
        last = {last[1], last[2], last[3], sample};
        const auto [a, b, c, d] = last;
        for (; phase < 1; phase += step) {
            const auto x = static_cast<float>(phase);
            out.push_back(b
                + 0.5F * x * (c - a + x * (2 * a - 5 * b + 4 * c - d + x * (3 * (b - c) + d - a))));
        }
        phase -= 1;
    }
    return out;
}

} // namespace kelo::engine
