#include "sound/output.h"

#include <fluidsynth.h>

#include <utility>

namespace kelo::engine {

namespace {

constexpr Frame period = 128; ///< frames a block
constexpr Frame periods = 5; ///< blocks on their way: with the one that is waited for 17 ms
constexpr double patience = 2; ///< seconds without a call after which a device is given up
constexpr std::chrono::milliseconds watchEvery{250};
constexpr std::chrono::seconds tryEvery{3};
constexpr std::chrono::seconds firstTry{2}; ///< the greeting waits for it

} // namespace

double monotonicNow()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// A sound server or card, by way of FluidSynth's audio drivers.
class Output::Device {
public:
    Device(Mixer &source, const std::string &name)
        : mixer(source)
        , settings(new_fluid_settings())
    {
        fluid_settings_setstr(settings, "audio.driver", name.c_str());
        fluid_settings_setnum(settings, "synth.sample-rate", sampleRate);
        fluid_settings_setint(settings, "audio.period-size", static_cast<int>(period));
        fluid_settings_setint(settings, "audio.periods", static_cast<int>(periods));
        fluid_settings_setstr(settings, "audio.sample-format", "float");
        driver = new_fluid_audio_driver2(settings, &Device::render, this);
    }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;
    ~Device()
    {
        delete_fluid_audio_driver(driver);
        delete_fluid_settings(settings);
    }

    [[nodiscard]] bool works() const { return driver != nullptr; }

    /// It still asks for sound. A server that has gone or hangs does not.
    [[nodiscard]] bool alive() const { return monotonicNow() - lastCall < patience; }

private:
    static int render(void *self, int count, int, float *[], int sides, float *out[])
    {
        if (sides < 2)
            return FLUID_FAILED;
        const auto size = static_cast<std::size_t>(count);
        auto &device = *static_cast<Device *>(self);
        const double now = monotonicNow();
        device.lastCall = now;
        device.mixer.render({out[0], size}, {out[1], size}, now);
        return FLUID_OK;
    }

    Mixer &mixer;
    std::atomic<double> lastCall = monotonicNow();
    fluid_settings_t *settings;
    fluid_audio_driver_t *driver = nullptr;
};

/// Nobody hears it, but it takes as long as if somebody did.
class Output::Silence {
public:
    explicit Silence(Mixer &mixer)
        : thread([&mixer](const std::stop_token &stop) {
            std::vector<float> left(period);
            std::vector<float> right(period);
            const auto begin = std::chrono::steady_clock::now();
            for (Frame done = 0; !stop.stop_requested(); done += period) {
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
    Mixer &source, AudioClock &clock, const std::string &driver, std::function<void()> changed)
    : mixer(source)
    , drivers(driver.empty()       ? std::vector<std::string>{"pulseaudio", "alsa"}
              : driver == "silent" ? std::vector<std::string>{}
                                   : std::vector<std::string>{driver})
    , notify(std::move(changed))
{
    clock.setLatency(drivers.empty() ? 0 : seconds(period * periods));
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
std::unique_ptr<Output::Device> Output::open()
{
    for (const std::string &name : drivers) {
        auto device = std::make_unique<Device>(mixer, name);
        if (!device->works())
            continue;
        drivers = {std::string(name)};
        return device;
    }
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
