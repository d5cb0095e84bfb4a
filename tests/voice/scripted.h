#pragma once

#include "support/link_fixture.h"
#include "voice/capture/microphone.h"
#include "voice/capture/permissions.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/recogniser.h"
#include "voice/voice_control.h"

#include <QPromise>

#include <stdexcept>

/// Stand-ins that do as a test says, and voice control made of them. What happens is noted in one
/// list of `events`, in order.
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
    QString openDevice;
    QStringList *events = nullptr;

    QFuture<QList<MicrophoneDevice>> discover() override
    {
        return QtFuture::makeReadyFuture(devices);
    }
    Opening open(const MicrophoneDevice &device, Sink sink) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return !openDevice.isEmpty(); }

    void hear(const AudioBuffer &buffer) const { sink_(buffer); }
    void pull();

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
    QList<RecognitionRequest> requests;
    std::vector<RecognitionTask::Handler> handlers; ///< of every session so far
    int buffers = 0; ///< that came to the newest session

    [[nodiscard]] bool isAvailable() const override { return available; }
    [[nodiscard]] bool isOnDevice() const override { return onDevice; }
    std::shared_ptr<RecognitionTask> start(
        const RecognitionRequest &request, RecognitionTask::Handler handler) override;
    [[nodiscard]] bool canBeTaught() const override { return teachable; }
    TaughtModel teach(const WakeTraining &training, const SpeechModelFiles &files) override;

    /// Has the newest session or an earlier one say something.
    void say(const QString &words, bool final = false) { say(handlers.size() - 1, words, final); }
    void say(std::size_t session, const QString &words, bool final)
    {
        handlers.at(session)(Transcript{words, final}, std::nullopt);
    }
    void fail(const QString &domain, int code)
    {
        handlers.back()(std::nullopt, RecogniserError{domain, code, QStringLiteral("it broke")});
    }
};

/// Voice control with all of that, a data directory with a voice log in it, and a clock.
class VoiceFixture {
public:
    VoiceFixture();

    VoiceControl *operator->() { return voice.get(); }
    /// Lines sent to the engine since the last call, without line feeds.
    QStringList sent() { return std::exchange(sent_, {}); }
    /// Messages logged since the last call.
    QStringList logged();
    [[nodiscard]] QVariant setting() const { return link.setting(QStringLiteral("voice")); }

    LinkFixture link;
    QStringList events; ///< what reached the microphone and the recogniser
    ScriptedPermissions *permissions = nullptr;
    ScriptedMicrophone *microphone = nullptr;
    ScriptedRecogniser *recogniser = nullptr;
    std::unique_ptr<VoiceControl> voice;

private:
    QStringList sent_;
    qsizetype logRead_ = 0;
};

} // namespace kelo::test
