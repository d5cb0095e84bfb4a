#include "sound/device.h"

#include <chrono>
#include <limits>

namespace kelo::engine {

namespace {

constexpr double patience = 2; ///< seconds without a call after which a device is given up

} // namespace

double monotonicNow()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool Device::alive() const
{
    return monotonicNow() - lastCall < patience;
}

void Device::render(std::span<float> left, std::span<float> right)
{
    const double now = monotonicNow();
    lastCall = now;
    mixer.render(left, right, now);
}

void Device::giveUp()
{
    lastCall = -std::numeric_limits<double>::infinity();
}

} // namespace kelo::engine
