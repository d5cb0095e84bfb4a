#include "voice/sphinx_task.h"

#include <QLoggingCategory>

#include <utility>

Q_DECLARE_LOGGING_CATEGORY(voiceLog)

namespace kelo {

namespace {

constexpr double dropsWorthLogging = 0.5; // seconds of sound

} // namespace

SphinxTask::SphinxTask(
    std::shared_ptr<SphinxDesk> sharedDesk, RecognitionRequest wanted, Handler told)
    : desk(std::move(sharedDesk))
    , request(std::move(wanted))
    , handler(std::move(told))
    , sound(request.live)
{
}

void SphinxTask::append(const AudioBuffer &buffer)
{
    Samples samples = monoOf(buffer);
    const std::lock_guard lock(desk->mutex);
    if (cancelled || audioEnded)
        return;
    if (buffer.format.rate != static_cast<int>(sampleRate)) {
        if (!resampler || resampler->rate() != buffer.format.rate)
            resampler.emplace(buffer.format.rate);
        samples = resampler->add(samples);
    }
    appended = Clock::now();
    dropped += sound.push(std::move(samples));
    if (dropped >= dropsWorthLogging && !finished)
        qCWarning(voiceLog) << "recognition falls behind:" << std::exchange(dropped, 0)
                            << "s of sound dropped";
    desk->changed.notify_one();
}

void SphinxTask::endAudio()
{
    const std::lock_guard lock(desk->mutex);
    audioEnded = true;
    desk->changed.notify_one();
}

void SphinxTask::cancel()
{
    const std::lock_guard lock(desk->mutex);
    cancelled = true;
    if (desk->newest.get() == this && !finished)
        desk->newest.reset();
    desk->changed.notify_one();
}

void SphinxTask::tell(
    const std::optional<Transcript> &transcript, const std::optional<RecogniserError> &error) const
{
    {
        const std::lock_guard lock(desk->mutex);
        if (cancelled)
            return;
    }
    handler(transcript, error);
}

void SphinxTask::finish()
{
    const std::lock_guard lock(desk->mutex);
    finished = true;
}

} // namespace kelo
