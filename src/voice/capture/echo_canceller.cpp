#include "voice/capture/echo_canceller.h"

#include <speex/speex_echo.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace kelo {

namespace {

constexpr std::size_t frame = 256; // samples; a power of two is fast
constexpr std::size_t reach = 4096; // samples: from being played to the last of its echoes
constexpr std::size_t patience = 1600; // samples
constexpr std::size_t most = 16000; // samples
constexpr std::size_t tolerated = 640; // samples
constexpr std::size_t watchFor = 32000; // samples
constexpr int nearlySilent = 8; // -72 dB

constexpr auto untold = std::numeric_limits<std::size_t>::max();

void drop(Samples &samples, std::size_t count)
{
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count));
}

} // namespace

EchoCanceller::EchoCanceller()
    : echo_(speex_echo_state_init(static_cast<int>(frame), static_cast<int>(reach)))
    , quiet_(reach)
    , backlog_(untold)
{
    int rate = static_cast<int>(sampleRate);
    speex_echo_ctl(echo_, SPEEX_ECHO_SET_SAMPLING_RATE, &rate);
}

EchoCanceller::~EchoCanceller()
{
    speex_echo_state_destroy(echo_);
}

void EchoCanceller::play(const Samples &samples)
{
    played_.insert(played_.end(), samples.begin(), samples.end());
    playing_ = true;
    if (played_.size() > most) // nobody hears
        drop(played_, played_.size() - most);
}

Samples EchoCanceller::hear(const Samples &samples)
{
    heard_.insert(heard_.end(), samples.begin(), samples.end());
    backlog_ = std::min(backlog_, played_.size() - std::min(heard_.size(), played_.size()));
    watched_ += samples.size();
    if (watched_ >= watchFor)
        forgetBacklog();
    Samples cleaned;
    const std::size_t waits = awaited_ ? frame + patience : frame;
    while (heard_.size() >= frame && (played_.size() >= frame || heard_.size() >= waits))
        takeFrame(cleaned);
    return cleaned;
}

void EchoCanceller::takeFrame(Samples &cleaned)
{
    played_.resize(std::max(played_.size(), frame)); // what never came is silence
    const auto loud = [](qint16 sample) { return std::abs(sample) > nearlySilent; };
    const auto end = played_.begin() + frame;
    quiet_ = std::any_of(played_.begin(), end, loud) ? 0 : quiet_ + frame;
    const std::size_t at = cleaned.size();
    cleaned.insert(cleaned.end(), heard_.begin(), heard_.begin() + frame);
    if (quiet_ < reach)
        speex_echo_cancellation(echo_, heard_.data(), played_.data(), cleaned.data() + at);
    drop(heard_, frame);
    drop(played_, frame);
}

/// What is ahead all the time is no unevenness of the two streams: the microphone had a hole, or
/// its clock is slower. What is learnt does not fit any more then, and would hinder learning anew.
void EchoCanceller::forgetBacklog()
{
    if (backlog_ >= tolerated) {
        drop(played_, backlog_);
        speex_echo_state_reset(echo_);
    }
    backlog_ = untold;
    awaited_ = std::exchange(playing_, false);
    watched_ = 0;
}

} // namespace kelo
