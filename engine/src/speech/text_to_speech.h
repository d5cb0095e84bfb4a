#pragma once

#include "speech/voices.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace kelo::engine {

/// What the assistant asks of speech: one text at a time. Seconds of the monotonic clock.
class TextToSpeech {
public:
    virtual ~TextToSpeech() = default;

    /// Says `text` now; what was being said is cut off.
    virtual void say(std::string_view text, double now) = 0;
    virtual void stop() = 0;
    [[nodiscard]] virtual bool speaking() const = 0;

    /// Speaks with one of `voices` from the next text on.
    virtual void setVoice(std::size_t index) = 0;

    virtual void setStyle(const SpeechStyle &style) = 0;
    /// 1 is as a voice is by itself. What is mixed here has its loudness from the mixer.
    virtual void setLoudness(float value) = 0;

    /// Speaks with the desktop's speech service from the next text on, if that answers; else, and
    /// where it does not, with a voice of our own.
    virtual void useSystemVoice(bool value) = 0;
    [[nodiscard]] virtual bool usesSystemVoice() const = 0;

    /// Does what is due at `now`.
    virtual void advance(double now) = 0;
    [[nodiscard]] virtual std::optional<double> deadline() const = 0;
};

} // namespace kelo::engine
