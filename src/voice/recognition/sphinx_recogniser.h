#pragma once

#include "voice/recognition/recogniser.h"

#include <QString>

#include <atomic>
#include <memory>
#include <thread>

namespace kelo {

struct SphinxMailbox;

/// PocketSphinx with its English model, on one thread of its own that lives as long as this. The
/// decoder is loaded with the first session and let go again after a minute without one.
///
/// A session ends by itself with a final result when the speaker pauses. What is said from there
/// on is kept and begins the next session, if that comes soon.
class SphinxRecogniser final : public Recogniser {
public:
    /// `directory` holds the model; nothing is available without it.
    explicit SphinxRecogniser(QString directory);
    ~SphinxRecogniser() override;

    [[nodiscard]] bool isAvailable() const override { return available_; }
    [[nodiscard]] bool isOnDevice() const override { return true; }
    std::shared_ptr<RecognitionTask> start(
        const RecognitionRequest &request, RecognitionTask::Handler handler) override;
    [[nodiscard]] bool canBeTaught() const override { return available_; }
    TaughtModel teach(const WakeTraining &training, const SpeechModelFiles &files) override;

private:
    void work();

    QString directory_;
    std::atomic<bool> available_;
    std::shared_ptr<SphinxMailbox> mailbox_; ///< shared with the tasks, which may outlive this
    std::thread worker_;
};

} // namespace kelo
