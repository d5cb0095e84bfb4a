#include "speech/speech_dispatcher.h"

#include "log/log.h"

#include <libspeechd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

namespace kelo::engine {

namespace {

using Event = SpeechDispatcher::Report::Event;

/// Whom the service's library calls back: it passes nothing on that would tell.
std::atomic<SpeechDispatcher *> listener = nullptr;

/// Settings of the service go from -100 to 100.
int serviceScale(float value, float full)
{
    return std::clamp(static_cast<int>(std::lround(value / full * 100)), -100, 100);
}

struct Closing {
    void operator()(SPDConnection *connection) const { spd_close(connection); }
};
using Connection = std::unique_ptr<SPDConnection, Closing>;

} // namespace

struct SpeechDispatcher::Callbacks {
    static void begun(std::size_t message, std::size_t, SPDNotificationType)
    {
        tell(message, {Event::Begun});
    }
    static void over(std::size_t message, std::size_t, SPDNotificationType)
    {
        tell(message, {Event::Over});
    }
    static void mark(std::size_t message, std::size_t, SPDNotificationType, char *name)
    {
        Report report{Event::Word};
        if (name && std::sscanf(name, "%d %d", &report.from, &report.length) == 2)
            tell(message, report);
    }
    static void tell(std::size_t message, const Report &report)
    {
        if (SpeechDispatcher *dispatcher = listener)
            dispatcher->post(static_cast<int>(message), report);
    }
    static Connection connect()
    {
        // It can be started where it usually is, but not at an address of somebody's choice.
        const int mayStart = std::getenv("SPEECHD_ADDRESS") ? 0 : 1;
        char *reason = nullptr;
        Connection connection(
            spd_open2("kelo", nullptr, nullptr, SPD_MODE_THREADED, nullptr, mayStart, &reason));
        if (!connection) {
            log(LogLevel::Warning, "speech",
                std::string("the system's speech service does not answer: ")
                    + (reason ? reason : "unknown"));
            std::free(reason);
            return nullptr;
        }
        connection->callback_begin = &begun;
        connection->callback_end = &over;
        connection->callback_cancel = &over;
        connection->callback_im = &mark;
        for (const auto wanted : {SPD_BEGIN, SPD_END, SPD_CANCEL, SPD_INDEX_MARKS})
            spd_set_notification_on(connection.get(), wanted);
        if (spd_set_data_mode(connection.get(), SPD_DATA_SSML) < 0)
            return nullptr;
        return connection;
    }
};

SpeechDispatcher::SpeechDispatcher(bool isWanted, std::function<void()> ready)
    : notify_(std::move(ready))
{
    setWanted(isWanted);
}

void SpeechDispatcher::setWanted(bool value)
{
    if (value == std::exchange(usable_, value))
        return;
    if (!value) {
        stop();
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(runs_, true))
            return;
        wanted_.reset();
        notifications_.clear();
    }
    listener = this;
    thread_ = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

SpeechDispatcher::~SpeechDispatcher()
{
    if (!thread_.joinable())
        return;
    thread_.request_stop();
    thread_.join();
    listener = nullptr;
}

void SpeechDispatcher::say(std::string text)
{
    {
        const std::lock_guard lock(mutex_);
        wanted_ = std::move(text);
        spoken_ = 0;
    }
    changed_.notify_all();
}

void SpeechDispatcher::setLoudness(float value)
{
    const std::lock_guard lock(mutex_);
    loudness_ = value;
}

void SpeechDispatcher::setStyle(const SpeechStyle &style)
{
    const std::lock_guard lock(mutex_);
    style_ = style;
}

void SpeechDispatcher::post(int message, const Report &report)
{
    {
        const std::lock_guard lock(mutex_);
        notifications_.push_back({message, report});
    }
    notify_();
}

std::vector<SpeechDispatcher::Report> SpeechDispatcher::take()
{
    std::vector<Report> reports;
    const std::lock_guard lock(mutex_);
    // A text may begin before the service has told its number; what is older is of no interest.
    std::erase_if(notifications_, [&](const Notification &notification) {
        const bool ours = notification.message == spoken_;
        if (ours)
            reports.push_back(notification.report);
        return ours || notification.message < spoken_;
    });
    if (!reports.empty() && reports.back().event == Event::Failed)
        usable_ = false;
    return reports;
}

void SpeechDispatcher::run(const std::stop_token &stop)
{
    const Connection connection = Callbacks::connect();
    bool speaks = connection != nullptr;
    std::array<int, 3> set{100, 0, 0}; // the service's own; it is at its loudest
    while (speaks) {
        std::unique_lock lock(mutex_);
        if (!changed_.wait(lock, stop, [this] { return wanted_.has_value(); }))
            return;
        const std::string text = *std::exchange(wanted_, {});
        const std::array<int, 3> now{serviceScale(loudness_ - 0.5F, 0.5F),
            serviceScale(static_cast<float>(style_.rate - SpeechStyle{}.rate),
                SpeechStyle::fastest - SpeechStyle{}.rate),
            serviceScale(static_cast<float>(style_.pitch - SpeechStyle{}.pitch), 50)};
        lock.unlock();
        spd_stop(connection.get());
        if (text.empty())
            continue;
        if (std::exchange(set, now) != now) {
            spd_set_volume(connection.get(), now[0]);
            spd_set_voice_rate(connection.get(), now[1]);
            spd_set_voice_pitch(connection.get(), now[2]);
        }
        const int message = spd_say(connection.get(), SPD_TEXT, markedUp(text).c_str());
        speaks = message > 0;
        lock.lock();
        if (speaks && !wanted_)
            spoken_ = message;
        lock.unlock();
        notify_(); // of what it told before its number
    }
    {
        const std::lock_guard lock(mutex_);
        spoken_ = 0;
        runs_ = false;
    }
    post(0, {Event::Failed});
}

} // namespace kelo::engine
