#pragma once

#include "speech/voices.h"
#include "speech/word_marks.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
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

/// Turns text into sound with eSpeak NG, on a thread of its own and some seconds ahead.
class Synthesiser {
public:
    /// `ready` is called on that thread whenever there is something to `take`.
    explicit Synthesiser(std::function<void()> ready);
    ~Synthesiser();
    Synthesiser(const Synthesiser &) = delete;
    Synthesiser &operator=(const Synthesiser &) = delete;

    [[nodiscard]] bool works() const { return rate_ > 0; }

    /// Speaks with one of `voices` from the next text on.
    void setVoice(std::size_t index);

    void setStyle(const SpeechStyle &style);

    /// Gives up what is being spoken and begins `text` (one line of valid UTF-8).
    void begin(std::uint32_t utterance, std::string text);
    void cancel() { begin(0, {}); }

    /// What has been spoken since the last call, of the current utterance alone.
    [[nodiscard]] std::vector<SpeechChunk> take();

private:
    struct Job;

    void run(const std::stop_token &stop);
    void speak(const std::string &text, std::uint32_t utterance);
    struct Manner {
        std::size_t voice = 0;
        SpeechStyle style;
    };
    void use(const Manner &manner);
    [[nodiscard]] bool deliver(SpeechChunk chunk);

    std::function<void()> notify_;
    double rate_ = 0; ///< samples a second as spoken

    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::uint32_t current_ = 0;
    std::string waiting_; ///< the text to begin, if any
    Manner manner_;
    std::deque<SpeechChunk> chunks_;
    std::stop_token stopping_;
    std::jthread thread_;
};

} // namespace kelo::engine
