#include "sound/output.h"

#include "log/log.h"
#include "sound/fluid_device.h"
#include "sound/pulse_device.h"

#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t silentBlock = 128; ///< frames
constexpr std::chrono::milliseconds watchEvery{250};
constexpr std::chrono::seconds tryEvery{3};
constexpr std::chrono::seconds firstTry{2}; ///< the greeting waits for it

} // namespace

/// Nobody hears it, but it takes as long as if somebody did.
class Output::Silence {
public:
    explicit Silence(Mixer &mixer)
        : thread_([&mixer](const std::stop_token &stop) {
            std::vector<float> left(silentBlock);
            std::vector<float> right(silentBlock);
            const auto begin = std::chrono::steady_clock::now();
            for (Frame done = 0; !stop.stop_requested(); done += silentBlock) {
                std::this_thread::sleep_until(begin
                    + std::chrono::duration_cast<std::chrono::nanoseconds>(
                        std::chrono::duration<double>(seconds(done))));
                mixer.render(left, right, monotonicNow());
            }
        })
    {
    }

private:
    std::jthread thread_;
};

Output::Output(Mixer &source, AudioClock &audioClock, const std::string &driver, double firstQueue,
    std::function<void()> changed)
    : mixer_(source)
    , clock_(audioClock)
    , drivers_(driver.empty()      ? std::vector<std::string>{"pulseaudio", "alsa"}
              : driver == "silent" ? std::vector<std::string>{}
                                   : std::vector<std::string>{driver})
    , notify_(std::move(changed))
    , queue_(firstQueue)
{
    keeper_ = std::jthread([this](const std::stop_token &stop) { keepOpen(stop); });
    std::unique_lock lock(mutex_);
    news_.wait_for(lock, firstTry, [this] { return tried_; });
}

void Output::keepOpen(const std::stop_token &stop)
{
    bool missed = false; // and logged once, not every few seconds
    while (!stop.stop_requested()) {
        if (const auto device = open()) {
            missed = false;
            tell(true);
            while (!stop.stop_requested() && device->alive())
                rest(stop, watchEvery);
        } else {
            if (!drivers_.empty() && !std::exchange(missed, true))
                log(LogLevel::Warning, "sound", "no sound server and no sound card answers");
            tell(false);
            const Silence silence(mixer_);
            do
                rest(stop, tryEvery);
            while (drivers_.empty() && !stop.stop_requested());
        }
    }
}

/// The first device that works. Later on, and while a server does not answer yet, no other will do:
/// one that goes around the server would keep it from coming back.
std::unique_ptr<Device> Output::open()
{
    for (const std::string &name : drivers_) {
        PulseAttempt attempt = name == "pulseaudio"
            ? openPulseDevice(mixer_, clock_, queue_)
            : PulseAttempt{openFluidDevice(mixer_, clock_, name), false};
        if (attempt.hangs)
            break;
        if (!attempt.device)
            continue;
        log(LogLevel::Info, "sound", "plays by " + name);
        drivers_ = {std::string(name)};
        return std::move(attempt.device);
    }
    clock_.setLatency(0);
    return {};
}

void Output::tell(bool works)
{
    {
        const std::lock_guard lock(mutex_);
        tried_ = true;
    }
    news_.notify_all();
    if (heard_.exchange(works) != works)
        notify_();
}

void Output::rest(const std::stop_token &stop, std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex_);
    news_.wait_for(lock, stop, time, [] { return false; });
}

} // namespace kelo::engine
