#include "speech/dispatcher.h"

#include <libspeechd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

namespace kelo::engine {

namespace {

using Event = Dispatcher::Report::Event;

/// Whom the service's library calls back: it passes nothing on that would tell.
std::atomic<Dispatcher *> listener = nullptr;

struct Closing {
    void operator()(SPDConnection *connection) const { spd_close(connection); }
};
using Connection = std::unique_ptr<SPDConnection, Closing>;

} // namespace

struct Dispatcher::Callbacks {
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
        if (Dispatcher *dispatcher = listener)
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
            std::fprintf(stderr, "no speech service: %s\n", reason ? reason : "unknown");
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

Dispatcher::Dispatcher(bool isWanted, std::function<void()> ready)
    : notify(std::move(ready))
    , usable(isWanted)
{
    if (!usable)
        return;
    listener = this;
    thread = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

Dispatcher::~Dispatcher()
{
    if (!thread.joinable())
        return;
    thread.request_stop();
    thread.join();
    listener = nullptr;
}

void Dispatcher::say(std::string text)
{
    {
        const std::lock_guard lock(mutex);
        wanted = std::move(text);
        spoken = 0;
    }
    changed.notify_all();
}

void Dispatcher::setLoudness(float value)
{
    const std::lock_guard lock(mutex);
    loudness = value;
}

void Dispatcher::post(int message, const Report &report)
{
    {
        const std::lock_guard lock(mutex);
        letters.push_back({message, report});
    }
    notify();
}

std::vector<Dispatcher::Report> Dispatcher::take()
{
    std::vector<Report> reports;
    const std::lock_guard lock(mutex);
    // A text may begin before the service has told its number; what is older is of no interest.
    std::erase_if(letters, [&](const Letter &letter) {
        const bool ours = letter.message == spoken;
        if (ours)
            reports.push_back(letter.report);
        return ours || letter.message < spoken;
    });
    if (!reports.empty() && reports.back().event == Event::Failed)
        usable = false;
    return reports;
}

void Dispatcher::run(const std::stop_token &stop)
{
    const Connection connection = Callbacks::connect();
    bool speaks = connection != nullptr;
    int set = 100; // the service's own is its loudest
    while (speaks) {
        std::unique_lock lock(mutex);
        if (!changed.wait(lock, stop, [this] { return wanted.has_value(); }))
            return;
        const std::string text = *std::exchange(wanted, {});
        const int volume =
            std::clamp(static_cast<int>(std::lround(loudness * 200)) - 100, -100, 100);
        lock.unlock();
        spd_stop(connection.get());
        if (text.empty())
            continue;
        if (std::exchange(set, volume) != volume)
            spd_set_volume(connection.get(), volume);
        const int message = spd_say(connection.get(), SPD_TEXT, markedUp(text).c_str());
        speaks = message > 0;
        lock.lock();
        if (speaks && !wanted)
            spoken = message;
        lock.unlock();
        notify(); // of what it told before its number
    }
    {
        const std::lock_guard lock(mutex);
        spoken = 0;
    }
    post(0, {Event::Failed});
}

} // namespace kelo::engine
