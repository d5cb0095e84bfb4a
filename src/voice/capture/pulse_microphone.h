#pragma once

#include "voice/capture/echo_canceller.h"
#include "voice/capture/microphone.h"

#include <QPromise>

#include <optional>

struct pa_context;
struct pa_proplist;
struct pa_source_info;
struct pa_stream;
struct pa_threaded_mainloop;
struct pa_time_event;
struct pa_mainloop_api;

namespace kelo {

/// Captures through the PulseAudio protocol, which PipeWire serves too. Everything but the short
/// calls of its interface happens on the library's own thread; a server that is not there, dies or
/// does not answer costs a `discover` without devices. What the default output plays is listened to
/// as well, so that the microphone's sound comes without its echo; where that cannot be had the
/// sound comes as it is.
class PulseMicrophone final : public Microphone {
    Q_OBJECT

public:
    PulseMicrophone();
    ~PulseMicrophone() override;

    /// The library's thread runs; without it there are never any devices.
    [[nodiscard]] bool isWorking() const { return loop_ != nullptr; }

    QFuture<QList<MicrophoneDevice>> discover() override;
    QFuture<Opening> open(const MicrophoneDevice &device, Sink sink) override;
    void close() override;

private:
    struct Search;

    // All with the loop's lock held, as its callbacks are.
    void stop(pa_time_event *&timer) const;
    bool connectToServer();
    void disconnect();
    void answerNone();
    void contextChanged();
    void ask();
    void found(const pa_source_info &source);
    void answer();
    void streamChanged(pa_stream *stream);
    void streamEnded(Opening reason);
    void read(pa_stream *stream);
    void dropStream();
    void listenToOutput();
    void dropOutput();

    pa_threaded_mainloop *loop_ = nullptr;
    pa_context *context_ = nullptr;
    pa_stream *stream_ = nullptr;
    pa_stream *output_ = nullptr; // what is played, while the microphone is open
    std::optional<EchoCanceller> canceller_;
    pa_time_event *patience_ = nullptr;
    std::unique_ptr<Search> search_;
    Sink sink_;
    std::optional<QPromise<Opening>> opening_; // until it is answered
    pa_time_event *openingPatience_ = nullptr;
    qint64 serial_ = 0; // of the capture that is open; tells a late loss from ours
};

} // namespace kelo
