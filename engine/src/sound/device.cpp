#include "sound/device.h"

#include <limits>

namespace kelo::engine {

namespace {

constexpr double patience = 2; ///< seconds without a call after which a device is given up

} // namespace

bool Device::alive() const
{
    return monotonicNow() - lastCall_ < patience;
}

void Device::render(std::span<float> left, std::span<float> right)
{
    const double now = monotonicNow();
    lastCall_ = now;
    mixer_.render(left, right, now);
}

void Device::giveUp()
{
    lastCall_ = -std::numeric_limits<double>::infinity();
}

} // namespace kelo::engine
