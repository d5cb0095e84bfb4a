#pragma once

#include "voice/capture/resampler.h"
#include "voice/recognition/recogniser.h"
#include "voice/recognition/sound_queue.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace kelo {

class DecodingTask;

/// Where tasks leave their sound and the recogniser's worker picks it up.
struct DecodingMailbox {
    std::mutex mutex;
    std::condition_variable changed;
    std::shared_ptr<DecodingTask> newest; ///< the one to work on
    std::stop_source closing; ///< requested under the mutex
};

/// The caller's side of a session: what came in for it and whether it is still wanted. All fields
/// but the first three are guarded by the mailbox's mutex.
class DecodingTask final : public RecognitionTask {
public:
    using Clock = std::chrono::steady_clock;

    DecodingTask(std::shared_ptr<DecodingMailbox> shared, RecognitionRequest wanted, Handler told);

    void append(const AudioBuffer &buffer) override;
    void endAudio() override;
    void cancel() override;
    /// What it says is not wanted any more. Whoever works on it need not go on; from any thread.
    void abandon() { abandoned_.request_stop(); }
    [[nodiscard]] std::stop_token abandoned() const { return abandoned_.get_token(); }

    /// Calls the handler unless the task was abandoned. On the worker's thread.
    void tell(const std::optional<Transcript> &transcript,
        const std::optional<RecogniserError> &error) const;
    /// A line for the voice log.
    void log(const QString &line) const;
    /// The same, of something that should not be.
    void warn(const QString &line) const;
    /// What comes next is the last result.
    void finish();

    const std::shared_ptr<DecodingMailbox> mailbox;
    const RecognitionRequest request;
    const Handler handler;
    SoundQueue sound;
    std::optional<Resampler> resampler; ///< for a microphone that has a rate of its own
    double dropped = 0; ///< seconds, not logged yet
    Clock::time_point appended;
    bool audioEnded = false;
    bool finished = false; ///< it has had its last result

private:
    std::stop_source abandoned_;
};

} // namespace kelo
