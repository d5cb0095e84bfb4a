#include "voice/recognition/sound_cleaner.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo {

void SoundCleaner::interrupt()
{
    lastInput_.reset();
    centred_ = 0;
}

Samples SoundCleaner::clean(Samples samples)
{
    return tone_.under(suppressor_.clean(centred(std::move(samples))));
}

/// Without the constant offset that some microphones add: its beginning would sound like a click.
Samples SoundCleaner::centred(Samples samples)
{
    constexpr double kept = 0.995; // a sample: what is below 13 Hz goes
    for (qint16 &sample : samples) {
        const double input = sample;
        centred_ = kept * centred_ + input - lastInput_.value_or(input);
        lastInput_ = input;
        sample = static_cast<qint16>(std::clamp(std::lround(centred_), -32768L, 32767L));
    }
    return samples;
}

} // namespace kelo
