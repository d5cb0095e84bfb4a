#pragma once

#include "link/reading.h"
#include "link/voice_input.h"
#include "voice/capture/audio.h"
#include "voice/capture/microphone_choice.h"
#include "voice/recognition/wake_model.h"
#include "voice/voice_log_file.h"
#include "voice/voice_setup.h"

#include <memory>
#include <mutex>
#include <utility>

namespace kelo {

/// Turns the user's voice into text for the engine.
///
/// While it is on, one microphone feeds one recognition session at a time. Every transcript goes
/// to the engine as it comes, which finds the assistant's name and the command in it; a session is
/// replaced after its final result, after an error, and every now and then. What happens is told
/// by `status`, by `level`, and in the voice log. Everything is on the GUI thread except for
/// `captured`.
class VoiceControl : public QObject, public VoiceInput {
    Q_OBJECT
    Q_PROPERTY(bool on READ on NOTIFY onChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(double level READ level NOTIFY levelChanged)

    /// What can be read of it.
    struct State {
        bool on = false;
        QString status = QStringLiteral("OFF");
        double level = 0;
        double quietSince = 0;
        double openUntil = 0;
        bool awaiting = false;
        qint64 consumed = 0;
    };
    State state_; // first: everything that can be read stands for a part of it

public:
    explicit VoiceControl(VoiceSetup setup = VoiceSetup::deaf(), QObject *parent = nullptr);
    ~VoiceControl() override;

    /// The instance of this process, made on first use; it needs the application object.
    static VoiceControl &shared();

    // ---- switches ----

    [[nodiscard]] bool isOn() const override { return on; }
    /// Turns voice control on once the user allows it. It stays on when there is no microphone, and
    /// listens as soon as there is one.
    Q_INVOKABLE void begin() override;
    Q_INVOKABLE void stop() override;
    Q_INVOKABLE void toggle() { on ? stop() : begin(); }
    /// At launch: turns it on if the user left it on.
    void resumeIfWanted();

    // ---- sessions ----

    /// Replaces the recognition session by a new, empty one. The microphone stays as it is;
    /// without one there is nothing to listen to and none is started.
    void listen() override;
    /// A fresh session if voice control is on.
    void startOver()
    {
        if (on)
            listen();
    }
    void setVocabulary(const QStringList &phrases) override { vocabulary_ = phrases; }
    /// The assistant has finished speaking.
    void voiceFinished();

    // ---- microphones ----

    /// Those that were there when last looked for.
    [[nodiscard]] const QList<MicrophoneDevice> &microphones() const { return capture_.devices(); }
    /// Looks for them anew; `microphonesChanged` tells what is new.
    void refreshMicrophones() { capture_.refresh(); }
    /// The name of the one that is listened with; empty while nothing is.
    [[nodiscard]] QString microphoneInUse() const { return microphone_.inUse(); }
    /// The id of the one that the user wants whenever it is there, kept across launches; empty for
    /// the one that suggests itself (`chosenMicrophone`).
    [[nodiscard]] const QString &wantedMicrophone() const { return microphone_.wanted(); }
    void chooseMicrophone(const QString &id) { microphone_.choose(id); }
    void useMicrophone(const QString &wanted) override;

    /// Appends a line to the voice log.
    void log(const QString &text) const { log_.add(text); }

    // ---- published: `willChange` comes before a value is stored, its own signal after ----

    Reading<bool> on{state_.on}; ///< wanted and running
    Reading<QString> status{state_.status};
    Reading<double> level{state_.level}; ///< loudness, 0 to 1
    /// The loudness is this now: by the microphone, and for pictures of the display.
    void showLevel(double shown);

    // ---- what a gate for the name could go by; nothing here acts on it ----

    const double &quietSince = state_.quietSince; ///< when the assistant last fell silent
    const double &openUntil = state_.openUntil;
    const bool &awaiting = state_.awaiting; ///< an answer of the user is expected
    const qint64 &consumed = state_.consumed; ///< characters of this session that were acted on
    void awaitAnswer(bool expected) { state_.awaiting = expected; }

Q_SIGNALS:
    void willChange();
    void onChanged();
    void statusChanged();
    void levelChanged();
    /// `microphones` or `microphoneInUse` are new.
    void microphonesChanged();

private:
    template <typename T> void store(T State::*field, T value, void (VoiceControl::*changed)())
    {
        Q_EMIT willChange();
        state_.*field = std::move(value);
        Q_EMIT(this->*changed)();
    }
    void setOn(bool wanted) { store(&State::on, wanted, &VoiceControl::onChanged); }
    void showStatus(const QString &text)
    {
        store(&State::status, text, &VoiceControl::statusChanged);
    }

    void askForMicrophone();
    void microphoneOpened();
    void withoutMicrophone();
    void startWatchdog();
    void watch();
    void endSession();
    [[nodiscard]] QStringList expectedPhrases() const;
    void captured(const AudioBuffer &buffer); // on the microphone's thread
    void report(const LevelReport &loudness);
    void complain(const QString &line);
    void handle(qint64 session, const std::optional<Transcript> &transcript,
        const std::optional<RecogniserError> &error);
    void renew(qint64 session);
    void remember(bool wanted) const;

    VoiceSetup setup_;
    VoiceLogFile log_;
    CaptureSession capture_;
    MicrophoneChoice microphone_;
    WakeModel wakeModel_;
    QStringList vocabulary_;
    int turn_ = 0; // answers to an earlier turn's questions are not wanted any more
    std::unique_ptr<QObject> refresh_; // while it exists, the watchdog timer runs
    std::shared_ptr<RecognitionTask> session_;
    qint64 sessionId_ = 0;
    QString lastWords_;
    double lastHeardAt_ = 0;
    bool assistantSpoke_ = false; // when last looked at
    QString lastComplaint_; // of the recogniser's, so that it is logged once

    std::mutex feeding_;
    std::shared_ptr<RecognitionTask> fed_; // what capture feeds; guarded by `feeding_`
    PeakMeter meter_; // on the microphone's thread
};

} // namespace kelo
