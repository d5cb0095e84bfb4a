#include "voice/wake_lab/recording.h"

#include <algorithm>
#include <future>

namespace kelo {

namespace {

constexpr std::size_t bufferSize = 320; // 20 ms, as a microphone sends it

} // namespace

QString recognised(Recogniser &recogniser, const std::optional<TaughtModel> &taught,
    const Samples &recording, const QStringList &phrases)
{
    std::promise<QString> answer;
    std::future<QString> words = answer.get_future();
    RecognitionRequest request;
    request.contextualStrings = phrases;
    request.taught = taught;
    request.live = false;
    const auto task = recogniser.start(request, [&](const auto &transcript, const auto &error) {
        if (error || transcript->final)
            answer.set_value(transcript ? transcript->words : QString());
    });
    for (std::size_t at = 0; at < recording.size(); at += bufferSize) {
        const std::size_t size = std::min(bufferSize, recording.size() - at);
        task->append({{},
            QByteArray(reinterpret_cast<const char *>(recording.data() + at),
                static_cast<qsizetype>(size * sizeof(qint16)))});
    }
    task->endAudio();
    return words.get();
}

} // namespace kelo
