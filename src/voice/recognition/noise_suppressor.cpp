#include "voice/recognition/noise_suppressor.h"

#include <speex/speex_preprocess.h>

#include <numeric>
#include <vector>

namespace kelo {

namespace {

constexpr std::size_t frame = 160; // samples

/// Twice the library's own. What it leaves of hiss is heard as f, th and v.
constexpr int noiseGain = -30; // dB

/// A noise that goes on does not fall so far below itself for so long.
constexpr double farLess = 0.25; // of its power
constexpr std::size_t goneAfter = 10 * frame;

/// The power of a spectrum that the library tells of.
double power(SpeexPreprocessState *state, int sizeRequest, int request)
{
    int size = 0;
    speex_preprocess_ctl(state, sizeRequest, &size);
    std::vector<spx_int32_t> bins(static_cast<std::size_t>(size));
    speex_preprocess_ctl(state, request, bins.data());
    return std::accumulate(bins.begin(), bins.end(), 0.0);
}

} // namespace

NoiseSuppressor::NoiseSuppressor()
{
    begin();
}

NoiseSuppressor::~NoiseSuppressor()
{
    speex_preprocess_state_destroy(state_);
}

void NoiseSuppressor::begin()
{
    if (state_)
        speex_preprocess_state_destroy(state_);
    state_ = speex_preprocess_state_init(static_cast<int>(frame), static_cast<int>(sampleRate));
    int on = 1;
    speex_preprocess_ctl(state_, SPEEX_PREPROCESS_SET_DENOISE, &on);
    int gain = noiseGain;
    speex_preprocess_ctl(state_, SPEEX_PREPROCESS_SET_NOISE_SUPPRESS, &gain);
}

bool NoiseSuppressor::believesTooMuch() const
{
    const double noise =
        power(state_, SPEEX_PREPROCESS_GET_NOISE_PSD_SIZE, SPEEX_PREPROCESS_GET_NOISE_PSD);
    return power(state_, SPEEX_PREPROCESS_GET_PSD_SIZE, SPEEX_PREPROCESS_GET_PSD) < farLess * noise;
}

/// Of a noise that has gone the library takes seconds to forget, and what is said meanwhile goes
/// with it; so it begins anew, with what has been heard since.
void NoiseSuppressor::cleanFrame(qint16 *samples)
{
    late_.insert(late_.end(), samples, samples + frame);
    speex_preprocess_run(state_, samples);
    if (!believesTooMuch()) {
        late_.clear();
    } else if (late_.size() >= goneAfter) {
        begin();
        for (std::size_t at = 0; at < late_.size(); at += frame)
            speex_preprocess_run(state_, late_.data() + at);
        late_.clear();
    }
}

Samples NoiseSuppressor::clean(const Samples &samples)
{
    waiting_.insert(waiting_.end(), samples.begin(), samples.end());
    const std::size_t whole = waiting_.size() - waiting_.size() % frame;
    const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(whole);
    Samples cleaned(waiting_.begin(), end);
    waiting_.erase(waiting_.begin(), end);
    for (std::size_t at = 0; at < whole; at += frame)
        cleanFrame(cleaned.data() + at);
    return cleaned;
}

} // namespace kelo
