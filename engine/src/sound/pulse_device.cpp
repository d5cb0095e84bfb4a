#include "sound/pulse_device.h"

#include "log/log.h"
#include "sound/realtime.h"

#include <pulse/pulseaudio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <semaphore>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t pieceFrames = 128; ///< the server asks for as little as 3 ms
constexpr double firstQueue = 0.012; ///< seconds of sound on their way at first
constexpr double longestQueue = 0.05; ///< a key is still heard in time with the finger
constexpr double queueGrowth = 1.5; ///< each time that the server ran dry
constexpr double growthEvery = 0.5; ///< seconds until the last growth has shown what it is worth
constexpr std::chrono::seconds connectWithin{2};
constexpr std::size_t frameBytes = 2 * sizeof(float);

class PulseDevice : public Device {
public:
    PulseDevice(Mixer &source, AudioClock &audioClock, std::atomic<double> &queue);
    ~PulseDevice() override;

    /// Waits until the server has answered. False where that takes too long.
    [[nodiscard]] bool answered() { return settled_.try_acquire_for(connectWithin); }
    [[nodiscard]] bool playing() const { return playing_; }

    /// Sound goes before all else, where anybody allows it.
    void favour();

private:
    void contextChanged();
    void streamChanged();
    void fill(std::size_t bytes);
    void ranDry();
    [[nodiscard]] pa_buffer_attr shape() const;
    void settle(bool works);

    template <typename Source, void (PulseDevice::*Method)()>
    static void forward(Source *, void *self)
    {
        (static_cast<PulseDevice *>(self)->*Method)();
    }

    AudioClock &clock_;
    std::atomic<double> &queue_; ///< seconds; only the library's thread changes it
    std::binary_semaphore settled_{0};
    std::atomic<bool> playing_ = false;
    std::atomic<pid_t> unfavoured_ = 0; ///< the library's thread, where it has no right of its own
    pa_threaded_mainloop *loop_ = pa_threaded_mainloop_new();
    pa_context *context_ = nullptr;

    // The library's thread's own, once that runs.
    pa_stream *stream_ = nullptr;
    bool answered_ = false;
    double lastGrowth_ = 0;
};

PulseDevice::PulseDevice(Mixer &source, AudioClock &audioClock, std::atomic<double> &queue)
    : Device(source)
    , clock_(audioClock)
    , queue_(queue)
{
    queue_ = std::clamp(queue.load(), firstQueue, longestQueue);
    context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Kelo");
    pa_context_set_state_callback(
        context_, &forward<pa_context, &PulseDevice::contextChanged>, this);
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0
        || pa_threaded_mainloop_start(loop_) < 0)
        settle(false);
}

PulseDevice::~PulseDevice()
{
    pa_threaded_mainloop_stop(loop_);
    if (stream_) {
        pa_stream_disconnect(stream_);
        pa_stream_unref(stream_);
    }
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    pa_threaded_mainloop_free(loop_);
}

void PulseDevice::favour()
{
    if (unfavoured_ != 0 && !askBroker(unfavoured_))
        log(LogLevel::Info, "sound", "sound goes before nothing else: nobody allows it");
}

void PulseDevice::settle(bool works)
{
    if (!works)
        giveUp();
    playing_ = works;
    if (!std::exchange(answered_, true))
        settled_.release();
}

void PulseDevice::contextChanged()
{
    const pa_context_state_t state = pa_context_get_state(context_);
    if (!PA_CONTEXT_IS_GOOD(state))
        return settle(false);
    if (state != PA_CONTEXT_READY)
        return;
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(sampleRate), 2};
    stream_ = pa_stream_new(context_, "Kelo", &format, nullptr);
    if (!stream_)
        return settle(false);
    pa_stream_set_state_callback(stream_, &forward<pa_stream, &PulseDevice::streamChanged>, this);
    pa_stream_set_underflow_callback(stream_, &forward<pa_stream, &PulseDevice::ranDry>, this);
    pa_stream_set_write_callback(
        stream_,
        [](pa_stream *, std::size_t bytes, void *self) {
            static_cast<PulseDevice *>(self)->fill(bytes);
        },
        this);
    if (!favourThisThread())
        unfavoured_ = gettid();
    clock_.setLatency(queue_);
    lastGrowth_ = monotonicNow();
    const pa_buffer_attr attributes = shape();
    if (pa_stream_connect_playback(
            stream_, nullptr, &attributes, PA_STREAM_ADJUST_LATENCY, nullptr, nullptr)
        < 0)
        settle(false);
}

void PulseDevice::streamChanged()
{
    const pa_stream_state_t state = pa_stream_get_state(stream_);
    if (!PA_STREAM_IS_GOOD(state))
        settle(false);
    else if (state == PA_STREAM_READY)
        settle(true);
}

/// Nothing is gathered before it plays: time goes on where the server runs dry, so that a gap
/// swallows sound and all that follows is heard when it should be.
pa_buffer_attr PulseDevice::shape() const
{
    constexpr auto byDefault = static_cast<std::uint32_t>(-1);
    return {byDefault, static_cast<std::uint32_t>(frames(queue_)) * std::uint32_t{frameBytes}, 0,
        pieceFrames * frameBytes, byDefault};
}

void PulseDevice::fill(std::size_t bytes)
{
    std::array<float, pieceFrames> left{};
    std::array<float, pieceFrames> right{};
    std::array<float, 2 * pieceFrames> sides{};
    for (std::size_t wanted = bytes / frameBytes; wanted > 0;) {
        const std::size_t count = std::min(wanted, pieceFrames);
        render({left.data(), count}, {right.data(), count});
        for (std::size_t i = 0; i < count; ++i) {
            sides[2 * i] = left[i];
            sides[2 * i + 1] = right[i];
        }
        pa_stream_write(stream_, sides.data(), count * frameBytes, nullptr, 0, PA_SEEK_RELATIVE);
        wanted -= count;
    }
}

void PulseDevice::ranDry()
{
    const double now = monotonicNow();
    if (now - lastGrowth_ < growthEvery || queue_ >= longestQueue)
        return;
    lastGrowth_ = now;
    queue_ = std::min(queueGrowth * queue_, longestQueue);
    clock_.setLatency(queue_);
    const pa_buffer_attr attributes = shape();
    if (pa_operation *growing = pa_stream_set_buffer_attr(stream_, &attributes, nullptr, nullptr))
        pa_operation_unref(growing);
}

} // namespace

PulseAttempt openPulseDevice(Mixer &mixer, AudioClock &clock, std::atomic<double> &queue)
{
    auto device = std::make_unique<PulseDevice>(mixer, clock, queue);
    if (!device->answered())
        return {{}, true};
    if (!device->playing())
        return {};
    device->favour();
    return {std::move(device), false};
}

} // namespace kelo::engine
