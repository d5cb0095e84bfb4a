#pragma once

#include "speech/speech_maker.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kelo::engine {

/// Turns text into sound with eSpeak NG, on a thread of its own and some seconds ahead.
class Synthesiser : public SpeechMaker {
public:
    /// `ready` is called on that thread whenever there is something to `take`.
    explicit Synthesiser(std::function<void()> ready);
    ~Synthesiser() override;
    Synthesiser(const Synthesiser &) = delete;
    Synthesiser &operator=(const Synthesiser &) = delete;

    [[nodiscard]] bool works() const override { return rate_ > 0; }
    void setVoice(std::size_t index) override;
    void setStyle(const SpeechStyle &style) override;
    void begin(std::uint32_t utterance, std::string text) override;
    [[nodiscard]] std::vector<SpeechChunk> take() override;

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
    std::jthread thread_;
};

} // namespace kelo::engine
