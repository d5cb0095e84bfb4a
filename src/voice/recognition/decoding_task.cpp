#include "voice/recognition/decoding_task.h"

#include <QLoggingCategory>

#include <utility>

Q_DECLARE_LOGGING_CATEGORY(voiceLog)

namespace kelo {

namespace {

constexpr double dropsWorthLogging = 0.5; // seconds of sound

} // namespace

DecodingTask::DecodingTask(
    std::shared_ptr<DecodingMailbox> shared, RecognitionRequest wanted, Handler told)
    : mailbox(std::move(shared))
    , request(std::move(wanted))
    , handler(std::move(told))
    , sound(request.live)
{
}

void DecodingTask::append(const AudioBuffer &buffer)
{
    Samples samples = monoOf(buffer);
    const std::lock_guard lock(mailbox->mutex);
    if (audioEnded || abandoned_.stop_requested())
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
    mailbox->changed.notify_one();
}

void DecodingTask::endAudio()
{
    const std::lock_guard lock(mailbox->mutex);
    audioEnded = true;
    mailbox->changed.notify_one();
}

void DecodingTask::cancel()
{
    abandon();
    const std::lock_guard lock(mailbox->mutex);
    if (mailbox->newest.get() == this && !finished)
        mailbox->newest.reset();
    mailbox->changed.notify_one();
}

void DecodingTask::tell(
    const std::optional<Transcript> &transcript, const std::optional<RecogniserError> &error) const
{
    if (!abandoned_.stop_requested())
        handler(transcript, error);
}

void DecodingTask::warn(const QString &line) const
{
    qCWarning(voiceLog).noquote() << line;
    log(line);
}

void DecodingTask::log(const QString &line) const
{
    if (request.log && !abandoned_.stop_requested())
        request.log(line);
}

void DecodingTask::finish()
{
    const std::lock_guard lock(mailbox->mutex);
    finished = true;
}

} // namespace kelo
