#include "sound/output.h"

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
        : thread([&mixer](const std::stop_token &stop) {
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
    std::jthread thread;
};

Output::Output(
    Mixer &source, AudioClock &audioClock, const std::string &driver, std::function<void()> changed)
    : mixer(source)
    , clock(audioClock)
    , drivers(driver.empty()       ? std::vector<std::string>{"pulseaudio", "alsa"}
              : driver == "silent" ? std::vector<std::string>{}
                                   : std::vector<std::string>{driver})
    , notify(std::move(changed))
{
    keeper = std::jthread([this](const std::stop_token &stop) { keepOpen(stop); });
    std::unique_lock lock(mutex);
    news.wait_for(lock, firstTry, [this] { return tried; });
}

Output::~Output() = default;

void Output::keepOpen(const std::stop_token &stop)
{
    while (!stop.stop_requested()) {
        if (const auto device = open()) {
            tell(true);
            while (!stop.stop_requested() && device->alive())
                rest(stop, watchEvery);
        } else {
            tell(false);
            const Silence silence(mixer);
            do
                rest(stop, tryEvery);
            while (drivers.empty() && !stop.stop_requested());
        }
    }
}

/// The first device that works. Later on no other will do: one that goes around the server would
/// keep it from coming back.
std::unique_ptr<Device> Output::open()
{
    for (const std::string &name : drivers) {
        auto device = name == "pulseaudio" ? openPulseDevice(mixer, clock)
                                           : openFluidDevice(mixer, clock, name);
        if (!device)
            continue;
        drivers = {std::string(name)};
        return device;
    }
    clock.setLatency(0);
    return {};
}

void Output::tell(bool works)
{
    {
        const std::lock_guard lock(mutex);
        tried = true;
    }
    news.notify_all();
    if (heard.exchange(works) != works)
        notify();
}

void Output::rest(const std::stop_token &stop, std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex);
    news.wait_for(lock, stop, time, [] { return false; });
}

} // namespace kelo::engine
