#include "sound/output.h"

#include <fluidsynth.h>

#include <chrono>
#include <stop_token>
#include <thread>
#include <utility>
#include <vector>

namespace kelo::engine {

namespace {

constexpr Frame period = 128; ///< frames a block
constexpr Frame periods = 5; ///< blocks on their way: with the one that is waited for 17 ms

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

private:
    static int render(void *self, int count, int, float *[], int sides, float *out[])
    {
        if (sides < 2)
            return FLUID_FAILED;
        const auto size = static_cast<std::size_t>(count);
        static_cast<Device *>(self)->mixer.render({out[0], size}, {out[1], size}, monotonicNow());
        return FLUID_OK;
    }

    Mixer &mixer;
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

Output::Output(Mixer &mixer, AudioClock &clock, const std::string &driver)
{
    const auto names = driver.empty() ? std::vector<std::string>{"pulseaudio", "alsa"}
                                      : std::vector<std::string>{driver};
    clock.setLatency(seconds(period * periods));
    for (const std::string &name : names) {
        auto candidate = name == "silent" ? nullptr : std::make_unique<Device>(mixer, name);
        if (candidate && candidate->works()) {
            device = std::move(candidate);
            return;
        }
    }
    clock.setLatency(0);
    silence = std::make_unique<Silence>(mixer);
}

Output::~Output() = default;

bool Output::audible() const
{
    return device != nullptr;
}

} // namespace kelo::engine
