#pragma once

#include "sound/device.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace kelo::engine {

/// The way to the loudspeakers: a thread that asks the mixer for sound, for as long as this
/// lives. Where no sound can be had it keeps time all the same, in silence, and looks again and
/// again: a sound server may start late, end and come back. Nobody else ever waits for it.
class Output {
public:
    /// `driver` is "pulseaudio", "alsa" or another that FluidSynth knows; "silent" for none;
    /// empty takes the first that works. `firstQueue` is how many seconds of sound to have on their
    /// way at least. `changed` is called on a thread of its own when `audible` changes.
    Output(Mixer &source, AudioClock &audioClock, const std::string &driver, double firstQueue,
        std::function<void()> changed);

    [[nodiscard]] bool audible() const { return heard_; }
    /// How many seconds are on their way: more each time that the server ran dry.
    [[nodiscard]] double queue() const { return queue_; }

private:
    class Silence;

    void keepOpen(const std::stop_token &stop);
    [[nodiscard]] std::unique_ptr<Device> open();
    void tell(bool works);
    void rest(const std::stop_token &stop, std::chrono::milliseconds time);

    Mixer &mixer_;
    AudioClock &clock_;
    std::vector<std::string> drivers_; ///< that may work
    std::function<void()> notify_;
    std::atomic<bool> heard_ = false;
    std::atomic<double> queue_;
    std::mutex mutex_;
    std::condition_variable_any news_;
    bool tried_ = false; ///< guarded by `mutex`
    std::jthread keeper_; ///< last, for it uses all the rest
};

} // namespace kelo::engine
