#include "voice/recognition/noise_suppressor.h"

#include <speex/speex_preprocess.h>

namespace kelo {

namespace {

constexpr std::size_t frame = 160; // samples

/// Twice the library's own. What it leaves of hiss is heard as f, th and v.
constexpr int noiseGain = -30; // dB

} // namespace

NoiseSuppressor::NoiseSuppressor()
    : state_(speex_preprocess_state_init(static_cast<int>(frame), static_cast<int>(sampleRate)))
{
    int on = 1;
    speex_preprocess_ctl(state_, SPEEX_PREPROCESS_SET_DENOISE, &on);
    int gain = noiseGain;
    speex_preprocess_ctl(state_, SPEEX_PREPROCESS_SET_NOISE_SUPPRESS, &gain);
}

NoiseSuppressor::~NoiseSuppressor()
{
    speex_preprocess_state_destroy(state_);
}

Samples NoiseSuppressor::clean(const Samples &samples)
{
    waiting_.insert(waiting_.end(), samples.begin(), samples.end());
    const std::size_t whole = waiting_.size() - waiting_.size() % frame;
    const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(whole);
    Samples cleaned(waiting_.begin(), end);
    waiting_.erase(waiting_.begin(), end);
    for (std::size_t at = 0; at < whole; at += frame)
        speex_preprocess_run(state_, cleaned.data() + at);
    return cleaned;
}

} // namespace kelo
