#pragma once

#include "sound/audio_clock.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelo::engine {

/// What speaks asks of the sound below it.
class SpeechOutput {
public:
    virtual ~SpeechOutput() = default;

    /// One block of an utterance: mono samples that sound from `frame` on. Samples whose time
    /// is past are left out. False when enough is waiting already.
    static constexpr std::size_t blockSize = 256;
    virtual bool speak(std::uint32_t utterance, Frame frame, std::span<const float> samples) = 0;

    /// Only this utterance is heard from now on; another one's rest is faded out at once.
    virtual void listenTo(std::uint32_t utterance) = 0;
};

} // namespace kelo::engine
