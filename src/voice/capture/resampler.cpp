#include "voice/capture/resampler.h"

#include <speex/speex_resampler.h>

namespace kelo {

namespace {

constexpr int lowestRate = 4000; // samples a second
constexpr int highestRate = 768'000;

constexpr int quality = 8; // of 10; what would be folded back is 80 dB down

} // namespace

Resampler::Resampler(int rate)
    : rate_(rate)
{
    if (rate < lowestRate || rate > highestRate)
        return;
    state_ = speex_resampler_init(1, static_cast<spx_uint32_t>(rate),
        static_cast<spx_uint32_t>(sampleRate), quality, nullptr);
    if (state_)
        speex_resampler_skip_zeros(
            state_); // the first sample that comes out is the first that came
}

Resampler::~Resampler()
{
    if (state_)
        speex_resampler_destroy(state_);
}

Samples Resampler::add(const Samples &samples)
{
    if (!state_)
        return {};
    auto taken = static_cast<spx_uint32_t>(samples.size());
    constexpr std::size_t spare = 16; // what an earlier piece left over
    Samples result(
        static_cast<std::size_t>(static_cast<double>(samples.size()) * sampleRate / rate_) + spare);
    auto made = static_cast<spx_uint32_t>(result.size());
    speex_resampler_process_int(state_, 0, samples.data(), &taken, result.data(), &made);
    result.resize(made);
    return result;
}

Samples Resampler::finish(const Samples &samples)
{
    if (!state_)
        return {};
    Samples all = samples;
    all.resize(
        samples.size() + static_cast<std::size_t>(speex_resampler_get_input_latency(state_)));
    return add(all);
}

} // namespace kelo
