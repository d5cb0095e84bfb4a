#include "link/link.h"

#include "link/bounds.h"
#include "link/inbound.h"
#include "link/mode_name.h"
#include "link/paths.h"
#include "link/shell.h"
#include "link/voice_input.h"

#include <QCoreApplication>
#include <QDir>

#include <span>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr std::size_t ripplesInBars = 16;

QString nameOf(EngineState state)
{
    switch (state) {
    case EngineState::Starting:
        return u"STARTING"_s;
    case EngineState::Online:
        return u"ONLINE"_s;
    case EngineState::Restarting:
        return u"RESTARTING"_s;
    case EngineState::Offline:
        break;
    }
    return u"OFFLINE"_s;
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
    , engine_(
          {setup_.baseDir, setup_.payload, setup_.environment, setup_.time},
          [this](QByteArrayView line) { handle(line); }, this)
    , inbound_(std::make_unique<Inbound>(*this))
{
    // Stored without announcement: nobody can be listening yet.
    const QVariantMap profile = savedProfile(setup_.baseDir);
    const auto named = [&profile](const QString &key, QString &name) {
        const QVariant value = profile.value(key);
        if (value.typeId() == QMetaType::QString)
            name = bounds::bounded(value.toString(), bounds::name);
    };
    named(u"assistant"_s, state_.names.assistant);
    named(u"user"_s, state_.names.user);
    state_.display.large = setup_.settings->value(u"large"_s, false).toBool();
    state_.display.contrast = setup_.settings->value(u"contrast"_s, false).toBool();

    connect(&engine_, &EngineSupervisor::stateChanged, this, &Link::engineIs);
    connect(&engine_, &EngineSupervisor::gone, this, &Link::engineGone);
}

Link::~Link() = default;

Link &Link::shared()
{
    static auto *link = new Link(LinkSetup::ofThisProcess(), QCoreApplication::instance());
    return *link;
}

void Link::clearScene(const NoteListener *listener)
{
    if (scene_ == listener)
        scene_ = nullptr;
}

// ---- the engine's process ----

void Link::engineIs(EngineState known)
{
    change({&Link::stateChanged}, [known](LinkState &all) { all.engine = nameOf(known); });
}

void Link::engineGone(bool byItself)
{
    if (byItself && shell_ && shell_->mainWindowHidden())
        shell_->quit();
    change({&Link::stateChanged, &Link::speakingChanged}, [](LinkState &all) {
        all.engine = nameOf(EngineState::Offline);
        all.speech.speaking = false;
        all.keyboard.letGo();
    });
}

void Link::handle(QByteArrayView line)
{
    inbound_->handle(line, setup_.time.now());
}

// ---- what the engine is told ----

void Link::send(const QString &text)
{
    if (text.startsWith(u'#')) {
        if (text == u"#large")
            setAccess(u"large"_s, !large);
        else if (text == u"#contrast")
            setAccess(u"contrast"_s, !contrast);
        else if (text == u"#voice" && voiceInput_)
            voiceInput_->isOn() ? voiceInput_->stop() : voiceInput_->begin();
        return;
    }
    if (state_.engine != u"OFFLINE")
        engine_.write(text.toUtf8());
}

void Link::chooseFile()
{
    if (!shell_)
        return;
    const QString songs = songsFolder();
    shell_->chooseMidiFile(
        QDir(songs).exists() ? songs : QString(), [this](const QString &path) { playFile(path); });
}

void Link::playFile(const QString &path)
{
    // A line feed in a file's name would begin a command of its own.
    if (path.isEmpty() || path.contains(u'\n'))
        return;
    showVisualiser();
    send(u"~play "_s + path + u'\n');
}

void Link::playUrl(const QUrl &url)
{
    if (url.isLocalFile())
        playFile(url.toLocalFile());
    else
        speak(tr("I play files of this computer, and that is an address of the net. Save it among "
                 "your files, then drop it here."));
}

void Link::speak(const QString &text)
{
    send(u"~speak "_s + text + u'\n');
}

// ---- what the display asks for ----

void Link::setAccess(const QString &key, bool on)
{
    QSettings &settings = *setup_.settings;
    if (settings.contains(key) || settings.allKeys().size() < bounds::settings)
        settings.setValue(key, on);
    if (key == u"large")
        change({&Link::largeChanged}, [on](LinkState &all) { all.display.large = on; });
    else if (key == u"contrast")
        followContrast(on);
}

void Link::followContrast(bool on)
{
    change({&Link::contrastChanged}, [on](LinkState &all) { all.display.contrast = on; });
    if (shell_)
        shell_->setHighContrast(on);
    Q_EMIT willChange(); // what reads the theme and not the field must redraw too
}

void Link::setSettingsKept(bool kept)
{
    change(
        {&Link::settingsKeptChanged}, [kept](LinkState &all) { all.display.settingsKept = kept; });
    speak(kept ? tr("The settings of the display are kept again.")
               : tr("I can’t keep the settings of the display. They hold until you quit."));
}

void Link::showVisualiser(bool shown)
{
    change({&Link::visualChanged}, [shown](LinkState &all) { all.display.visual = shown; });
}

void Link::askWelcome()
{
    change({&Link::welcomeChanged}, [](LinkState &all) { all.display.welcome = true; });
}

void Link::finishWelcome(const QString &assistantName, const QString &userName)
{
    change(
        {&Link::assistantChanged, &Link::userChanged, &Link::welcomeChanged}, [&](LinkState &all) {
            all.names = {bounds::bounded(assistantName, bounds::name),
                bounds::bounded(userName, bounds::name)};
            all.display.welcome = false;
        });
}

void Link::setWelcomeKey(KeyTaker taker)
{
    change({&Link::welcomeKeyChanged},
        [&taker](LinkState &all) { all.display.welcomeKey = std::move(taker); });
}

QString Link::modeName() const
{
    return kelo::modeName(state_.readouts.mode);
}

// ---- the caption and the voice at an instant ----

qsizetype Link::segmentIndex(double position) const
{
    return kelo::segmentIndex(state_.speech.segments, position);
}

std::optional<VoiceFrame> Link::voiceBands(double at) const
{
    return state_.speech.speaking ? state_.spectrum.bandsAt(at) : std::nullopt;
}

Liveliness Link::liveliness() const
{
    return {state_.engine == u"OFFLINE", state_.speech.speaking, !state_.spectrum.frames.empty(),
        state_.speech.lastSound(), state_.pulseAt};
}

void Link::updateBars(double at)
{
    const std::span<const Ripple> all(
        ripples.constData(), static_cast<std::size_t>(ripples.size()));
    VoiceLevel &shown = state_.voiceLevel;
    kelo::updateBars(shown.bars, voiceBands(at), liveliness(),
        all.last(std::min(all.size(), ripplesInBars)), at, at - std::exchange(shown.barsAt, at));
    shown.level = levelOf(shown.bars);
    shown.levelAt = at;
}

} // namespace kelo
