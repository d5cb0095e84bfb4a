#pragma once

#include <QString>

#include <pulse/pulseaudio.h>

/// What makes the C library of PulseAudio safe and short to use.
namespace kelo::pulse {

/// Holds the lock of a library thread, on any other thread.
class Locked {
public:
    explicit Locked(pa_threaded_mainloop *loop)
        : loop_(loop)
    {
        pa_threaded_mainloop_lock(loop_);
    }
    ~Locked() { pa_threaded_mainloop_unlock(loop_); }
    Q_DISABLE_COPY_MOVE(Locked)

private:
    pa_threaded_mainloop *loop_;
};

/// Lets go of a question whose answer comes through its callback.
void forget(pa_operation *operation);

/// The device is part of this computer rather than something plugged into it.
[[nodiscard]] bool isInternal(const pa_proplist *properties);

} // namespace kelo::pulse
