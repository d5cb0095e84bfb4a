#pragma once

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

    /// Does what is due at `now`.
    virtual void advance(double now) = 0;
    [[nodiscard]] virtual std::optional<double> deadline() const = 0;
};

} // namespace kelo::engine
