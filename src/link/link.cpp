#include "link/link.h"

#include "link/engine_process.h"
#include "link/paths.h"
#include "link/shell.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr double restartAfterCrash = 1.0; // seconds
constexpr double restartAfterStop = 0.4; // seconds
constexpr auto quitPatience = 1500ms;
constexpr std::size_t ripplesInBars = 16;

std::optional<QByteArray> contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

} // namespace

LinkSetup LinkSetup::ofThisProcess()
{
    const auto environment = QProcessEnvironment::systemEnvironment();
    return {
        kelo::baseDir(), payloadDirectory(environment), environment, std::make_unique<QSettings>()};
}

Link::Link(LinkSetup setup, QObject *parent)
    : QObject(parent)
    , setup_(std::move(setup))
{
    // Stored without announcement: nobody can be listening yet.
    const QVariantMap profile = savedProfile(setup_.baseDir);
    const auto named = [&profile](const QString &key, const QString &otherwise) {
        const QVariant value = profile.value(key);
        return value.typeId() == QMetaType::QString ? value.toString() : otherwise;
    };
    assistant = named(u"assistant"_s, u"Kelo"_s);
    user = named(u"user"_s, QString());
    large = setup_.settings->value(u"large"_s, false).toBool();
    contrast = setup_.settings->value(u"contrast"_s, false).toBool();
}

Link::~Link() = default;

Link &Link::shared()
{
    static auto *link = new Link(LinkSetup::ofThisProcess(), QCoreApplication::instance());
    return *link;
}

// ---- the engine's process ----

void Link::start()
{
    stopping_ = false;
    state = u"STARTING"_s;
    installBridge();

    QProcessEnvironment environment = setup_.environment;
    environment.insert(u"ZU_UI"_s, u"1"_s);
    environment.insert(u"KELO_HOME"_s, setup_.baseDir);
    environment.insert(u"KELO_PAYLOAD"_s, setup_.payload);
    environment.insert(u"TERM"_s, u"dumb"_s);
    environment.insert(
        u"PATH"_s, u"/usr/bin:/bin:/usr/sbin:/sbin:/opt/homebrew/bin:/usr/local/bin"_s);

    releaseEngine();
    // The engine runs in the data directory, where a relative path would lead elsewhere.
    const QString executable = QFileInfo(setup_.payload + "/kelo-engine"_L1).absoluteFilePath();
    process_ = new EngineProcess(
        {executable, setup_.baseDir, environment}, [this](QByteArrayView line) { handle(line); },
        this);
    connect(process_, &EngineProcess::failedToStart, this, [this] {
        releaseEngine();
        state = u"OFFLINE"_s;
    });
    connect(process_, &EngineProcess::ended, this, &Link::engineEnded);
    process_->start();
}

void Link::stop()
{
    if (!process_ || stopping_)
        return;
    stopping_ = true;
    send(u"q"_s);
    process_->waitForEnd(quitPatience);
    process_->closeInput();
    if (process_->isRunning())
        process_->terminate();
}

void Link::restart()
{
    stop();
    releaseEngine();
    setup_.time.after(restartAfterStop, this, [this] { start(); });
}

void Link::releaseEngine()
{
    if (process_)
        std::exchange(process_, nullptr)->retire();
}

void Link::installBridge() const
{
    const QString name = u"/ostrell_bridge.lua"_s;
    const auto shipped = contents(setup_.payload + name);
    if (!shipped)
        return;
    const QString folder = setup_.baseDir + "/reaper"_L1;
    QDir().mkpath(folder);
    if (contents(folder + name) == shipped)
        return;
    QSaveFile file(folder + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(*shipped) < 0 || !file.commit())
        qCWarning(linkLog) << "could not install" << file.fileName() << file.errorString();
}

void Link::engineEnded(bool clean)
{
    if (!clean && !stopping_ && crashes_.forgive(setup_.time.now())) {
        state = u"RESTARTING"_s;
        setup_.time.after(restartAfterCrash, this, [this, crashed = QPointer(process_)] {
            if (crashed && process_ == crashed)
                start();
        });
        return;
    }
    if (clean && !stopping_ && shell_ && shell_->mainWindowHidden()) {
        shell_->quit();
        return;
    }
    goOffline();
}

void Link::goOffline()
{
    state = u"OFFLINE"_s;
    speaking = false;
    down.clear();
    played.clear();
}

void Link::handle(QByteArrayView line)
{
    inbound_.handle(line, setup_.time.now());
}

// ---- the caption at an instant ----

SpeechClock Link::speechClock() const
{
    return {caption->size(), speaking, spokenTo, gotWord, wordAt, wordTime, wordFrom, wordLen};
}

qsizetype Link::segmentIndex(double position) const
{
    return kelo::segmentIndex(segments, position);
}

qint64 Link::spokenIndex(double at) const
{
    return kelo::spokenIndex(speechClock(), at);
}

double Link::spokenExact(double at) const
{
    return kelo::spokenExact(speechClock(), at);
}

double Link::glide(double target, double at)
{
    cursor_ = kelo::glide(cursor_, target, at - std::exchange(cursorAt_, at));
    return cursor_;
}

// ---- the voice at an instant ----

Liveliness Link::liveliness() const
{
    return {state.get() == u"OFFLINE", speaking, !voiceFrames.empty(),
        gotWord ? wordAt : sayStarted, pulseAt};
}

std::optional<VoiceFrame> Link::voiceBands(double at) const
{
    return kelo::voiceBands({speaking, voiceFrames, voiceAnchor, voiceStart}, at);
}

double Link::easedLevel(double at)
{
    level = kelo::easedLevel(level, liveliness(), at, at - std::exchange(levelAt, at));
    return level;
}

void Link::updateBars(double at)
{
    const std::span<const Ripple> all(
        ripples.constData(), static_cast<std::size_t>(ripples.size()));
    kelo::updateBars(bars, voiceBands(at), liveliness(),
        all.last(std::min(all.size(), ripplesInBars)), at, at - std::exchange(barsAt, at));
    level = levelOf(bars);
    levelAt = at;
}

double Link::spin(double at)
{
    spinExtra_ += spinStep(level, at - std::exchange(spinAt_, at));
    return spinExtra_;
}

} // namespace kelo
