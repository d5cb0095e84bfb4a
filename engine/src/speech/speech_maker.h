#pragma once

#include "speech/voices.h"
#include "speech/word_marks.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelo::engine {

/// A piece of an utterance, in the order in which they sound.
struct SpeechChunk {
    std::uint32_t utterance = 0;
    std::vector<float> samples; ///< mono, at the output's rate
    std::vector<WordMark> words;
    std::string bands; ///< spectrum frames, sixteen letters each
    bool last = false;
};

/// What turns text into sound, some seconds ahead of what is heard.
class SpeechMaker {
public:
    virtual ~SpeechMaker() = default;

    [[nodiscard]] virtual bool works() const = 0;

    /// Speaks with one of `voices` from the next text on.
    virtual void setVoice(std::size_t index) = 0;
    virtual void setStyle(const SpeechStyle &style) = 0;

    /// Gives up what is being spoken and begins `text` (one line of valid UTF-8).
    virtual void begin(std::uint32_t utterance, std::string text) = 0;
    void cancel() { begin(0, {}); }

    /// What has been spoken since the last call, of the current utterance alone.
    [[nodiscard]] virtual std::vector<SpeechChunk> take() = 0;
};

} // namespace kelo::engine
