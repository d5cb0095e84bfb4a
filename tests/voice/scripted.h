#pragma once

#include "support/link_fixture.h"
#include "voice/capture/microphone.h"
#include "voice/capture/permissions.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/recogniser.h"
#include "voice/voice_control.h"

#include <QPromise>

/// Stand-ins that do as a test says, and voice control made of them. What happens is noted in one
/// list, in order.
namespace kelo::test {

struct ScriptedPermissions final : Permissions {
    bool speech = true;
    bool hearing = true;
    bool fromAnotherThread = false;

    QFuture<bool> speechRecognition() override { return answer(speech); }
    QFuture<bool> microphone() override { return answer(hearing); }

private:
    [[nodiscard]] QFuture<bool> answer(bool allowed) const;
};

class ScriptedMicrophone final : public Microphone {
    Q_OBJECT

public:
    QList<MicrophoneDevice> devices{
        {QStringLiteral("desk"), QStringLiteral("Desk Mic"), false, true}};
    Opening opening = Opening::Started;
    int searches = 0;
    QStringList *events = nullptr;

    QFuture<QList<MicrophoneDevice>> discover() override;
    QFuture<Opening> open(const MicrophoneDevice &device, Sink sink) override;
    void close() override;
    void hear(const AudioBuffer &buffer) const { sink_(buffer); }

private:
    Sink sink_;
};

class ScriptedRecogniser final : public Recogniser {
public:
    bool available = true;
    bool onDevice = true;
    bool teachable = false;
    QString teachingFails; ///< the reason
    std::atomic<int> taughtNames = 0;
    QStringList *events = nullptr;
    QStringList answers; ///< of sessions on recordings, one after the other
    QList<RecognitionRequest> requests;
    std::vector<RecognitionTask::Handler> handlers; ///< of every session so far
    int buffers = 0; ///< that came to the newest session

    [[nodiscard]] QString name() const override { return QStringLiteral("scripted"); }
    [[nodiscard]] bool isAvailable() const override { return available; }
    [[nodiscard]] bool isOnDevice() const override { return onDevice; }
    std::shared_ptr<RecognitionTask> start(
        const RecognitionRequest &request, RecognitionTask::Handler handler) override;
    [[nodiscard]] Teacher teacher() const override;
};

/// Voice control with all of that, a data directory with a voice log in it, and a clock.
class VoiceFixture {
public:
    VoiceFixture();

    VoiceControl *operator->() { return voice.get(); }
    /// What happened since the last call: status, on, level and settings when they changed, what
    /// reached microphone, recogniser and engine, all in order; then what was logged.
    QStringList trace();

    LinkFixture link;

private:
    void noteChanges();

    QStringList trace_;
    QMap<QString, QString> known_; // values as noted last
    qsizetype logRead_ = 0;

public:
    ScriptedPermissions *permissions = nullptr;
    ScriptedMicrophone *microphone = nullptr;
    ScriptedRecogniser *recogniser = nullptr;
    std::unique_ptr<VoiceControl> voice; ///< the last, since its end is noted too
};

} // namespace kelo::test
