#pragma once

#include "speech/voices.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kelo::engine {

/// The desktop's speech service, for those who want one voice everywhere. It is asked to speak and
/// tells how far it has come; the sound itself never comes by here, nor does its spectrum.
/// Waiting for the service happens on a thread of its own.
class SpeechDispatcher {
public:
    struct Report {
        enum class Event { Begun, Word, Over, Failed };

        Event event = Event::Over;
        int from = 0; ///< of a word, in UTF-16 units
        int length = 0;
    };

    /// `ready` is called on other threads whenever there is something to `take`.
    /// There may be one of them at a time.
    SpeechDispatcher(bool wanted, std::function<void()> ready);
    ~SpeechDispatcher();
    SpeechDispatcher(const SpeechDispatcher &) = delete;
    SpeechDispatcher &operator=(const SpeechDispatcher &) = delete;

    /// Turns to the service, or away from it. One that has failed is tried again.
    void setWanted(bool value);

    /// False where it is not wanted, cannot be had or has failed.
    [[nodiscard]] bool works() const { return usable_; }

    /// Says `text` (one line of valid UTF-8) in place of what is being said.
    void say(std::string text);
    void stop() { say({}); }
    /// 1 is as the desktop has it.
    void setLoudness(float value);
    /// The default style is as the desktop has it.
    void setStyle(const SpeechStyle &style);

    /// What has become of the last text since the last call. After `Failed` nothing more comes.
    [[nodiscard]] std::vector<Report> take();

private:
    struct Callbacks;
    /// What the service told of a text, by its own number.
    struct Notification {
        int message = 0;
        Report report;
    };

    void run(const std::stop_token &stop);
    void post(int message, const Report &report);

    std::function<void()> notify_;
    bool usable_ = false;

    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::optional<std::string> wanted_; ///< to be said next; empty to be silent
    float loudness_ = 1;
    SpeechStyle style_;
    bool runs_ = false; ///< the thread does
    int spoken_ = 0; ///< the service's number of the last text
    std::vector<Notification> notifications_;
    std::jthread thread_;
};

/// `text` as the service takes it: every word, as a reader sees it, behind a mark that names where
/// it stands, "FROM LENGTH" in UTF-16 units.
[[nodiscard]] std::string markedUp(const std::string &text);

} // namespace kelo::engine
