#include "voice/voice_control.h"

#include "voice/ear_line.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <utility>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(voiceLog, "kelo.voice")

namespace kelo {

namespace {

// Seconds.
constexpr double watchdogEvery = 40.0;
constexpr double quietBeforeRenewal = 6.0;
constexpr double renewalDelay = 0.4;
constexpr double answerWindow = 8.0;

constexpr auto notReadyLine =
    "~speak I can't listen yet. This Mac hasn't set up speech recognition "
    "that stays on the Mac. Turn on Dictation in System Settings, under "
    "Keyboard, wait a minute for it to download, then switch my listening "
    "back on.\n"_L1;

} // namespace

VoiceControl::VoiceControl(VoiceSetup setup, QObject *parent)
    : QObject(parent)
    , setup_(std::move(setup))
    , log_(setup_.baseDir, setup_.time)
    , capture_(
          std::move(setup_.microphone), setup_.time, [this](const QString &text) { log(text); })
    , microphone_(capture_, setup_.settings.get())
    , wakeModel_(setup_.recogniser.get(), setup_.baseDir + "/speech-model"_L1,
          [this](const QString &text) { log(text); })
{
    connect(&capture_, &CaptureSession::started, this, &VoiceControl::microphoneOpened);
    connect(&capture_, &CaptureSession::unavailable, this, &VoiceControl::withoutMicrophone);
    connect(&capture_, &CaptureSession::changed, this, &VoiceControl::microphonesChanged);
    if (setup_.link) {
        connect(setup_.link, &Link::speakingChanged, this, [this] {
            if (std::exchange(assistantSpoke_, setup_.link->speaking) && !setup_.link->speaking)
                voiceFinished();
        });
    }
}

VoiceControl::~VoiceControl()
{
    capture_.stop(); // from here on nothing is captured
    endSession();
}

VoiceControl &VoiceControl::shared()
{
    static auto *control =
        new VoiceControl(VoiceSetup::ofThisProcess(), QCoreApplication::instance());
    return *control;
}

// ---- switches ----

void VoiceControl::begin()
{
    showStatus(u"ASKING PERMISSION"_s);
    log(u"turning on"_s);
    const int turn = ++turn_;
    setup_.permissions->speechRecognition().then(this, [this, turn](bool allowed) {
        if (turn != turn_)
            return;
        if (!allowed)
            showStatus(u"SPEECH NOT ALLOWED"_s);
        log("speech recognition permission: "_L1 + (allowed ? "allowed"_L1 : "not allowed"_L1));
        if (allowed)
            askForMicrophone();
    });
}

void VoiceControl::askForMicrophone()
{
    setup_.permissions->microphone().then(this, [this, turn = turn_](bool allowed) {
        if (turn != turn_)
            return;
        log("microphone permission: "_L1 + (allowed ? "allowed"_L1 : "not allowed"_L1));
        if (!allowed) {
            showStatus(u"MICROPHONE NOT ALLOWED"_s);
            return;
        }
        setOn(true);
        remember(true);
        capture_.start([this](const AudioBuffer &buffer) { captured(buffer); });
    });
}

void VoiceControl::stop()
{
    ++turn_;
    setOn(false);
    remember(false);
    refresh_.reset();
    endSession();
    capture_.stop();
    showStatus(u"OFF"_s);
    showLevel(0);
    log(u"turned off"_s);
}

void VoiceControl::resumeIfWanted()
{
    if (setup_.settings && setup_.settings->value(u"voice"_s, false).toBool())
        begin();
}

void VoiceControl::remember(bool wanted) const
{
    if (setup_.settings)
        setup_.settings->setValue(u"voice"_s, wanted);
}

// ---- sessions ----

void VoiceControl::listen()
{
    endSession();
    if (!on || !capture_.isRunning())
        return;
    if (!setup_.recogniser || !setup_.recogniser->isAvailable()) {
        showStatus(u"RECOGNISER UNAVAILABLE"_s);
        log(u"the speech recogniser is not available"_s);
        return;
    }
    if (!setup_.recogniser->isOnDevice()) {
        showStatus(u"ON-DEVICE SPEECH NOT READY"_s);
        log(u"on-device recognition is not available: not listening"_s);
        setup_.send(notReadyLine);
        stop();
        return;
    }
    const QString assistant = setup_.link->assistant;
    RecognitionRequest request;
    wakeModel_.apply(request, assistant);
    wakeModel_.prepare(assistant, [this] { startOver(); });
    request.contextualStrings = expectedPhrases();
    request.log = [this](const QString &line) {
        QMetaObject::invokeMethod(this, [this, line] { complain(line); });
    };

    state_.consumed = 0;
    showStatus(u"LISTENING FOR “%1”"_s.arg(assistant.toUpper()));
    session_ = setup_.recogniser->start(
        request, [this, session = ++sessionId_](const auto &transcript, const auto &error) {
            QMetaObject::invokeMethod(this, [=, this] { handle(session, transcript, error); });
        });
    const std::lock_guard lock(feeding_);
    fed_ = session_;
}

void VoiceControl::endSession()
{
    {
        const std::lock_guard lock(feeding_);
        fed_.reset();
    }
    if (!session_)
        return;
    session_->cancel();
    session_->endAudio();
    session_.reset();
}

QStringList VoiceControl::expectedPhrases() const
{
    if (!vocabulary_.isEmpty())
        return vocabulary_;
    const QString assistant = setup_.link->assistant;
    return {assistant, "Hey "_L1 + assistant, u"composition"_s, u"metronome"_s, u"REAPER"_s,
        u"Clair de Lune"_s, u"ear training"_s, u"jazz lesson"_s};
}

void VoiceControl::startWatchdog()
{
    refresh_ = std::make_unique<QObject>();
    watch();
}

/// A session that has grown old is replaced, but neither while the assistant speaks nor just after
/// words were heard.
void VoiceControl::watch()
{
    setup_.time.after(watchdogEvery, refresh_.get(), [this] {
        watch();
        if (on && !setup_.link->speaking && setup_.time.now() - lastHeardAt_ > quietBeforeRenewal)
            listen();
    });
}

void VoiceControl::handle(qint64 session, const std::optional<Transcript> &transcript,
    const std::optional<RecogniserError> &error)
{
    if (!on || !session_ || session != sessionId_)
        return;
    if (transcript) {
        if (transcript->words != lastWords_) {
            lastWords_ = transcript->words;
            lastHeardAt_ = setup_.time.now();
        }
        if (!setup_.link->typing)
            setup_.send(earLine(transcript->words, transcript->final));
    }
    if (error && !error->isExpected()) {
        log(u"recogniser error %1 %2: %3"_s.arg(
            error->domain, QString::number(error->code), error->description));
    }
    if (error || (transcript && transcript->final))
        renew(session);
}

void VoiceControl::renew(qint64 session)
{
    setup_.time.after(renewalDelay, this, [this, session] {
        if (on && session_ && session == sessionId_)
            listen();
    });
}

void VoiceControl::voiceFinished()
{
    state_.quietSince = setup_.time.now();
    if (awaiting)
        state_.openUntil = quietSince + answerWindow;
}

// ---- the microphone ----

void VoiceControl::useMicrophone(const QString &wanted)
{
    capture_.refresh([this, wanted] {
        setup_.send("~speak "_L1 + microphone_.follow(wanted).simplified() + u'\n');
    });
}

void VoiceControl::microphoneOpened()
{
    listen();
    if (on) // listening may have found that it cannot work here
        startWatchdog();
}

void VoiceControl::withoutMicrophone()
{
    refresh_.reset();
    endSession();
    showStatus(u"NO MICROPHONE"_s);
    showLevel(0);
}

void VoiceControl::captured(const AudioBuffer &buffer)
{
    {
        const std::lock_guard lock(feeding_);
        if (fed_)
            fed_->append(buffer);
    }
    if (const auto loudness = meter_.add(peakOf(buffer), setup_.time.now()))
        QMetaObject::invokeMethod(this, [this, loudness] { report(*loudness); });
}

void VoiceControl::report(const LevelReport &loudness)
{
    if (!on || !capture_.isRunning())
        return;
    showLevel(loudness.shown());
    setup_.send(QString::asprintf("~lvl %.4f\n", loudness.peak));
    if (loudness.worthLogging()) {
        log(QString::asprintf("hearing sound: %lld buffers so far, recent peak %.3f",
            loudness.buffers, loudness.peak));
    }
}

void VoiceControl::showLevel(double shown)
{
    store(&State::level, shown, &VoiceControl::levelChanged);
}

void VoiceControl::complain(const QString &line)
{
    if (std::exchange(lastComplaint_, line) != line)
        log(line);
}

} // namespace kelo
