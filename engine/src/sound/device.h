#pragma once

#include "sound/mixer.h"
#include "sound/monotonic_time.h"

#include <atomic>

namespace kelo::engine {

/// An open way to the loudspeakers, which asks the mixer for sound on a thread of its own for as
/// long as it lives.
class Device {
public:
    explicit Device(Mixer &source)
        : mixer_(source)
    {
    }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;
    virtual ~Device() = default;

    /// It still asks for sound. A server that has gone or hangs does not.
    [[nodiscard]] bool alive() const;

protected:
    /// The next sound of both sides.
    void render(std::span<float> left, std::span<float> right);

    /// It will not ask again.
    void giveUp();

private:
    Mixer &mixer_;
    std::atomic<double> lastCall_ = monotonicNow();
};

} // namespace kelo::engine
