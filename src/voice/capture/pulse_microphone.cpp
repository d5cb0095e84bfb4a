#include "voice/capture/pulse_microphone.h"

#include "voice/capture/pulse_library.h"

#include <QCoreApplication>

#include <utility>
#include <vector>

namespace kelo {

namespace {

using namespace pulse;

constexpr pa_usec_t serverPatience = 1'000'000; // microseconds
constexpr pa_sample_spec captureSpec{PA_SAMPLE_S16NE, 16000, 1};
constexpr uint32_t bufferBytes = 640; // 20 ms
constexpr auto any = static_cast<uint32_t>(-1);
constexpr pa_buffer_attr shape{any, any, any, any, bufferBytes};

/// The samples that have come, piece by piece; a hole in the recording is left out.
template <typename Take> void takeAll(pa_stream *stream, const Take &take)
{
    while (pa_stream_readable_size(stream) > 0) {
        const void *data = nullptr;
        std::size_t size = 0;
        if (pa_stream_peek(stream, &data, &size) < 0 || size == 0)
            return;
        const auto *samples = static_cast<const qint16 *>(data);
        if (samples)
            take(Samples(samples, samples + size / sizeof(qint16)));
        pa_stream_drop(stream);
    }
}

} // namespace

/// Those who wait for the list of devices, and what is known of it.
struct PulseMicrophone::Search {
    std::vector<QPromise<QList<MicrophoneDevice>>> waiting;
    QList<MicrophoneDevice> devices;
    QString defaultId;
    QByteArray output; // the default one
    bool asked = false;
};

PulseMicrophone::PulseMicrophone()
    : search_(std::make_unique<Search>())
{
    loop_ = pa_threaded_mainloop_new();
    if (!loop_)
        return;
    pa_threaded_mainloop_set_name(loop_, "kelo.ear");
    if (pa_threaded_mainloop_start(loop_) < 0) {
        pa_threaded_mainloop_free(loop_);
        loop_ = nullptr;
    }
}

PulseMicrophone::~PulseMicrophone()
{
    if (!loop_)
        return;
    {
        const Locked lock(loop_);
        disconnect();
    }
    pa_threaded_mainloop_stop(loop_);
    pa_threaded_mainloop_free(loop_);
}

// ---- the server ----

bool PulseMicrophone::connectToServer()
{
    if (context_)
        return true;
    auto *api = pa_threaded_mainloop_get_api(loop_);
    context_ = pa_context_new(api, QCoreApplication::applicationName().toUtf8().constData());
    if (!context_)
        return false;
    pa_context_set_state_callback(
        context_,
        [](pa_context *, void *self) { static_cast<PulseMicrophone *>(self)->contextChanged(); },
        this);
    // Starting a server would take time, and is the session's business.
    const bool trying = pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0;
    return trying && context_; // a refusal at once has taken it away again
}

/// Lets go of a timer if it runs.
void PulseMicrophone::stop(pa_time_event *&timer) const
{
    if (timer)
        pa_threaded_mainloop_get_api(loop_)->time_free(std::exchange(timer, nullptr));
}

void PulseMicrophone::disconnect()
{
    dropStream();
    stop(patience_);
    if (context_) {
        pa_context_set_state_callback(context_, nullptr, nullptr);
        pa_context_disconnect(context_);
        pa_context_unref(context_);
        context_ = nullptr;
    }
}

void PulseMicrophone::contextChanged()
{
    const auto state = pa_context_get_state(context_);
    if (state == PA_CONTEXT_READY) {
        pa_context_set_subscribe_callback(
            context_,
            [](pa_context *, pa_subscription_event_type_t, uint32_t, void *self) {
                auto *microphone = static_cast<PulseMicrophone *>(self);
                QMetaObject::invokeMethod(
                    microphone, &Microphone::devicesChanged, Qt::QueuedConnection);
            },
            this);
        constexpr auto devices = static_cast<pa_subscription_mask_t>(
            PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER);
        forget(pa_context_subscribe(context_, devices, nullptr, nullptr));
        ask();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        if (stream_)
            streamChanged(stream_);
        answerNone();
    }
}

// ---- looking for devices ----

QFuture<QList<MicrophoneDevice>> PulseMicrophone::discover()
{
    QPromise<QList<MicrophoneDevice>> promise;
    promise.start();
    auto future = promise.future();
    if (!loop_) {
        promise.addResult(QList<MicrophoneDevice>());
        promise.finish();
        return future;
    }
    const Locked lock(loop_);
    search_->waiting.push_back(std::move(promise));
    if (!connectToServer()) {
        answerNone();
        return future;
    }
    if (!patience_) {
        patience_ = pa_context_rttime_new(
            context_, pa_rtclock_now() + serverPatience,
            [](pa_mainloop_api *, pa_time_event *, const timeval *, void *self) {
                static_cast<PulseMicrophone *>(self)->answerNone();
            },
            this);
    }
    if (pa_context_get_state(context_) == PA_CONTEXT_READY)
        ask();
    return future;
}

void PulseMicrophone::ask()
{
    if (search_->waiting.empty() || search_->asked)
        return;
    search_->asked = true;
    search_->devices.clear();
    forget(pa_context_get_server_info(
        context_,
        [](pa_context *, const pa_server_info *server, void *self) {
            if (!server)
                return;
            auto *microphone = static_cast<PulseMicrophone *>(self);
            microphone->search_->defaultId = QString::fromUtf8(server->default_source_name);
            const QByteArray output = server->default_sink_name;
            if (std::exchange(microphone->search_->output, output) != output)
                microphone->listenToOutput();
        },
        this));
    forget(pa_context_get_source_info_list(
        context_,
        [](pa_context *, const pa_source_info *source, int end, void *self) {
            if (end == 0)
                static_cast<PulseMicrophone *>(self)->found(*source);
            else
                static_cast<PulseMicrophone *>(self)->answer();
        },
        this));
}

void PulseMicrophone::found(const pa_source_info &source)
{
    if (const auto device = microphoneOf(source, search_->defaultId))
        search_->devices.append(*device);
}

/// There is no server, or it is deaf. The next search connects anew.
void PulseMicrophone::answerNone()
{
    search_->devices.clear();
    answer();
    disconnect();
}

void PulseMicrophone::answer()
{
    stop(patience_);
    search_->asked = false;
    for (auto &promise : std::exchange(search_->waiting, {})) {
        promise.addResult(search_->devices);
        promise.finish();
    }
}

// ---- capture ----

QFuture<Microphone::Opening> PulseMicrophone::open(const MicrophoneDevice &device, Sink sink)
{
    close();
    if (!loop_)
        return QtFuture::makeReadyFuture(Opening::NoInput);
    const Locked lock(loop_);
    if (!context_ || pa_context_get_state(context_) != PA_CONTEXT_READY)
        return QtFuture::makeReadyFuture(Opening::NoInput);
    stream_ = pa_stream_new(context_, "speech", &captureSpec, nullptr);
    if (!stream_)
        return QtFuture::makeReadyFuture(Opening::NotAttached);
    pa_stream_set_state_callback(
        stream_,
        [](pa_stream *stream, void *self) {
            static_cast<PulseMicrophone *>(self)->streamChanged(stream);
        },
        this);
    pa_stream_set_read_callback(
        stream_,
        [](pa_stream *stream, size_t, void *self) {
            static_cast<PulseMicrophone *>(self)->read(stream);
        },
        this);
    // Not moved: when its device is pulled the stream shall end rather than listen elsewhere.
    constexpr auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY);
    if (pa_stream_connect_record(stream_, device.id.toUtf8().constData(), &shape, flags) < 0) {
        dropStream();
        return QtFuture::makeReadyFuture(Opening::NotAttached);
    }
    sink_ = std::move(sink);
    listenToOutput();
    openingPatience_ = pa_context_rttime_new(
        context_, pa_rtclock_now() + serverPatience,
        [](pa_mainloop_api *, pa_time_event *, const timeval *, void *self) {
            static_cast<PulseMicrophone *>(self)->streamEnded(Opening::NotAttached);
        },
        this);
    opening_.emplace();
    opening_->start();
    return opening_->future();
}

void PulseMicrophone::close()
{
    if (!loop_)
        return;
    const Locked lock(loop_);
    ++serial_;
    dropStream();
}

void PulseMicrophone::dropStream()
{
    opening_.reset(); // unanswered, if it still is
    stop(openingPatience_);
    dropOutput();
    if (!stream_)
        return;
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_read_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
    sink_ = nullptr;
}

void PulseMicrophone::streamChanged(pa_stream *stream)
{
    const auto state = pa_stream_get_state(stream);
    if (!PA_STREAM_IS_GOOD(state) || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) {
        const bool gone = pa_context_errno(context_) == PA_ERR_NOENTITY;
        streamEnded(gone ? Opening::NoInput : Opening::NotAttached);
    } else if (state == PA_STREAM_READY && opening_) {
        stop(openingPatience_);
        opening_->addResult(Opening::Started);
        opening_->finish();
        opening_.reset();
    }
}

/// It could not be opened for `reason`, or has been lost.
void PulseMicrophone::streamEnded(Opening reason)
{
    auto opening = std::exchange(opening_, std::nullopt);
    dropStream();
    if (opening) {
        opening->addResult(reason);
        opening->finish();
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this, serial = serial_] {
            if (serial == serial_) // neither closed nor opened again since
                Q_EMIT lost();
        },
        Qt::QueuedConnection);
}

void PulseMicrophone::read(pa_stream *stream)
{
    takeAll(stream, [this](const Samples &heard) {
        const Samples samples = canceller_ ? canceller_->hear(heard) : heard;
        if (!samples.empty())
            sink_({{},
                QByteArray(reinterpret_cast<const char *>(samples.data()),
                    static_cast<qsizetype>(samples.size() * sizeof(qint16)))});
    });
}

// ---- what is played meanwhile ----

/// Listens to the default output as it is now, if the microphone is open.
void PulseMicrophone::listenToOutput()
{
    dropOutput();
    if (!stream_ || search_->output.isEmpty())
        return;
    output_ = pa_stream_new(context_, "echo", &captureSpec, nullptr);
    if (!output_)
        return;
    canceller_.emplace();
    pa_stream_set_read_callback(
        output_,
        [](pa_stream *stream, size_t, void *self) {
            auto &canceller = *static_cast<PulseMicrophone *>(self)->canceller_;
            takeAll(stream, [&](const Samples &played) { canceller.play(played); });
        },
        this);
    // An output where nothing plays may go to sleep all the same.
    constexpr auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_INHIBIT_AUTO_SUSPEND);
    if (pa_stream_connect_record(output_, (search_->output + ".monitor").constData(), &shape, flags)
        < 0)
        dropOutput();
}

void PulseMicrophone::dropOutput()
{
    canceller_.reset();
    if (!output_)
        return;
    pa_stream_set_read_callback(output_, nullptr, nullptr);
    pa_stream_disconnect(output_);
    pa_stream_unref(output_);
    output_ = nullptr;
}

} // namespace kelo
