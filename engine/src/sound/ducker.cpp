#include "sound/ducker.h"

#include "sound/audio_clock.h"

#include <cmath>

namespace kelo::engine {

namespace {

constexpr double hold = 0.35; ///< seconds
constexpr double attack = 0.03; ///< time constants, in seconds
constexpr double release = 0.3;

} // namespace

float Ducker::next(std::size_t count, bool speech)
{
    const double time = seconds(static_cast<Frame>(count));
    sinceSpeech_ = speech ? 0 : sinceSpeech_ + time;
    const bool down = sinceSpeech_ < hold;
    const float goal = down ? depth : 1.0F;
    const double share = 1 - std::exp(-time / (down ? attack : release));
    gain_ += (goal - gain_) * static_cast<float>(share);
    return gain_;
}

} // namespace kelo::engine
