#pragma once

#include "voice/recognition/speech_decoder.h"

#include <QString>

#include <memory>
#include <thread>
#include <vector>

namespace kelo {

/// A recogniser made of a decoder, on one thread of its own that lives as long as this. The decoder
/// is loaded with the first session and let go again after a minute without one; when that fails,
/// one of the next kind takes its place for good. It hears what passes the gate, cleaned.
///
/// A session ends by itself with a final result when the speaker pauses. What is said from there
/// on is kept and begins the next session, if that comes soon. Its end waits for no speech; a
/// thread that is held up in a library is left to itself.
class DecodingRecogniser final : public Recogniser {
public:
    /// `kinds`: the most wanted first. Those that are not there are passed over.
    explicit DecodingRecogniser(std::vector<DecoderKind> kinds);
    ~DecodingRecogniser() override;

    [[nodiscard]] QString name() const override;
    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] bool isOnDevice() const override { return true; }
    std::shared_ptr<RecognitionTask> start(
        const RecognitionRequest &request, RecognitionTask::Handler handler) override;
    [[nodiscard]] Teacher teacher() const override;

private:
    struct Worker;

    std::shared_ptr<Worker> worker_; ///< shared with its thread
    std::thread thread_;
};

} // namespace kelo
