#include "sound/fluid_device.h"

#include <fluidsynth.h>

namespace kelo::engine {

namespace {

constexpr Frame period = 128; ///< frames a block
constexpr Frame periods = 5; ///< blocks on their way: with the one that is waited for 17 ms

class FluidDevice : public Device {
public:
    FluidDevice(Mixer &source, const std::string &driverName)
        : Device(source)
        , settings_(new_fluid_settings())
    {
        fluid_settings_setstr(settings_, "audio.driver", driverName.c_str());
        fluid_settings_setnum(settings_, "synth.sample-rate", sampleRate);
        fluid_settings_setint(settings_, "audio.period-size", static_cast<int>(period));
        fluid_settings_setint(settings_, "audio.periods", static_cast<int>(periods));
        fluid_settings_setstr(settings_, "audio.sample-format", "float");
        driver_ = new_fluid_audio_driver2(settings_, &FluidDevice::fill, this);
    }
    ~FluidDevice() override
    {
        delete_fluid_audio_driver(driver_);
        delete_fluid_settings(settings_);
    }

    [[nodiscard]] bool works() const { return driver_ != nullptr; }

private:
    static int fill(void *self, int count, int, float *[], int sides, float *out[])
    {
        if (sides < 2)
            return FLUID_FAILED;
        const auto size = static_cast<std::size_t>(count);
        static_cast<FluidDevice *>(self)->render({out[0], size}, {out[1], size});
        return FLUID_OK;
    }

    fluid_settings_t *settings_;
    fluid_audio_driver_t *driver_ = nullptr;
};

} // namespace

std::unique_ptr<Device> openFluidDevice(Mixer &mixer, AudioClock &clock, const std::string &driver)
{
    clock.setLatency(seconds(period * periods));
    auto device = std::make_unique<FluidDevice>(mixer, driver);
    if (!device->works())
        return {};
    return device;
}

} // namespace kelo::engine
