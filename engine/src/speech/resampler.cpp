#include "speech/resampler.h"

#include "log/log.h"

#include <speex/speex_resampler.h>

#include <cmath>

namespace kelo::engine {

namespace {

constexpr int quality = 8; ///< of 10

} // namespace

void Resampler::Destroy::operator()(SpeexResamplerState_ *state) const
{
    speex_resampler_destroy(state);
}

Resampler::Resampler(double from, double to)
    : ratio_(to / from)
{
    int error = RESAMPLER_ERR_SUCCESS;
    state_.reset(speex_resampler_init(1, static_cast<spx_uint32_t>(std::lround(from)),
        static_cast<spx_uint32_t>(std::lround(to)), quality, &error));
    if (state_)
        speex_resampler_skip_zeros(state_.get());
    else
        log(LogLevel::Error, "speech", speex_resampler_strerror(error));
}

std::vector<float> Resampler::push(std::span<const float> samples)
{
    std::vector<float> out;
    while (state_ && !samples.empty()) {
        const std::size_t before = out.size();
        out.resize(
            before + static_cast<std::size_t>(static_cast<double>(samples.size()) * ratio_) + 64);
        auto taken = static_cast<spx_uint32_t>(samples.size());
        auto made = static_cast<spx_uint32_t>(out.size() - before);
        speex_resampler_process_float(
            state_.get(), 0, samples.data(), &taken, out.data() + before, &made);
        out.resize(before + made);
        if (taken == 0 && made == 0)
            break;
        samples = samples.subspan(taken);
    }
    return out;
}

std::vector<float> Resampler::finish()
{
    if (!state_)
        return {};
    const auto ahead = static_cast<std::size_t>(speex_resampler_get_input_latency(state_.get()));
    return push(std::vector<float>(ahead));
}

} // namespace kelo::engine
