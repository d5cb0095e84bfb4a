#pragma once

#include "voice/capture/audio.h"
#include "voice/name/wake_training.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace kelo {

/// What was said so far since the session began.
struct Transcript {
    QString words;
    bool final = false; ///< nothing will be added or changed
};

struct RecogniserError {
    QString domain;
    int code = 0;
    QString description;

    /// Silence, cancellation and the end of a session are no news.
    [[nodiscard]] bool isExpected() const;
};

/// What a session is to listen for.
struct RecognitionRequest {
    QStringList contextualStrings; ///< phrases that are likely now
    std::optional<TaughtModel> taught;
    /// Sound comes as it is spoken. Otherwise it comes from a recording, as fast as it can be read,
    /// and none of it is lost however long it waits.
    bool live = true;
    /// Takes what the user should find in the voice log, on a thread of the recogniser's; may be
    /// null.
    std::function<void(const QString &line)> log;
};

/// One recognition session: sound goes in, transcripts of it come out.
class RecognitionTask {
public:
    /// Called on a thread of the recogniser's with a transcript, an error or both. Transcripts
    /// come as the words are heard; a final one or an error is the last call.
    using Handler = std::function<void(
        const std::optional<Transcript> &, const std::optional<RecogniserError> &)>;

    virtual ~RecognitionTask() = default;

    /// From any thread; returns at once.
    virtual void append(const AudioBuffer &buffer) = 0;
    /// No more sound will come; what is left is recognised, then the session ends.
    virtual void endAudio() = 0;
    /// Ends the session now; the handler is not called any more, apart from a call under way.
    virtual void cancel() = 0;

protected:
    RecognitionTask() = default;
    Q_DISABLE_COPY_MOVE(RecognitionTask)
};

/// Prepares a model of a name, writes it into `files` and returns it. Takes its time, unless `stop`
/// is requested; on any thread, and the recogniser may be gone by then. Throws std::runtime_error
/// with a reason that a user can read.
using Teacher = std::function<TaughtModel(
    const WakeTraining &training, const SpeechModelFiles &files, const std::stop_token &stop)>;

/// Turns speech into English text on this computer. Used on the GUI thread unless it says so.
class Recogniser {
public:
    virtual ~Recogniser() = default;

    /// What a user can look up it by.
    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Recognition happens on this machine.
    [[nodiscard]] virtual bool isOnDevice() const = 0;
    /// Starts a session. No sessions but the newest get any words.
    virtual std::shared_ptr<RecognitionTask> start(
        const RecognitionRequest &request, RecognitionTask::Handler handler) = 0;

    /// Teaches it names; null when it cannot be taught.
    [[nodiscard]] virtual Teacher teacher() const = 0;

    /// What this system has; null when that is nothing.
    static std::unique_ptr<Recogniser> ofThisSystem();

protected:
    Recogniser() = default;
    Q_DISABLE_COPY_MOVE(Recogniser)
};

} // namespace kelo
