#pragma once

#include "voice/capture/microphone.h"

#include <pulse/pulseaudio.h>

#include <optional>

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

/// What a source of the server's is as a microphone. None when it plays what an output plays, or
/// when nothing is plugged into any of its sockets.
[[nodiscard]] std::optional<MicrophoneDevice> microphoneOf(
    const pa_source_info &source, const QString &defaultId);

} // namespace kelo::pulse
