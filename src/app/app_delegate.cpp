#include "app/app_delegate.h"

#include "app/announcer.h"
#include "app/arguments.h"
#include "app/desktop_ties.h"
#include "app/launch.h"
#include "app/main_view.h"
#include "app/overlay.h"
#include "app/session.h"
#include "hud/theme.h"
#include "link/link.h"
#include "voice/voice_control.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(appLog, "kelo.app")

namespace kelo {

namespace {

QPointer<AppDelegate> theDelegate; // NOLINT(*-avoid-non-const-global-variables): named `shared`

} // namespace

AppDelegate::AppDelegate(Link &link, VoiceControl &voice, QObject *parent)
    : QObject(parent)
    , link_(link)
    , voice_(voice)
    , questions_(link, voice)
    , scale_(settings_)
    , menuBar_([this] { return menuFacts(); })
{
    link_.setShell(this);
    link_.setVoiceInput(&voice_);
    connect(&menuBar_, &MenuBar::chosen, this, &AppDelegate::choose);
    connect(&menuBar_, &MenuBar::opening, &voice_, &VoiceControl::refreshMicrophones);
    connect(&windowMenu_, &ActionMenu::chosen, this, &AppDelegate::choose);
    connect(&keeper_, &SettingsKeeper::keptChanged, &link_, &Link::setSettingsKept);
    connect(&questions_, &WelcomeQuestions::asked, this, [this] { closedHalfWay_ = false; });
}

AppDelegate::~AppDelegate()
{
    link_.setShell(nullptr);
    link_.setVoiceInput(nullptr);
}

AppDelegate *AppDelegate::shared()
{
    return theDelegate;
}

bool AppDelegate::launch(const Arguments &arguments, bool startedByLogin)
{
    if (session::endRequested())
        return false;
    makeWindow();
    keeper_.keep();
    theDelegate = this;
    if (session::endRequested())
        return false; // before a window shows that would have to be drawn first
    const LaunchFacts facts{
        arguments.hidden, arguments.show, startedByLogin, loginItemOn(), Link::clock()};
    if (!startsHidden(facts))
        showWindow();

    desktop_ = std::make_unique<DesktopTies>(
        DesktopTies::Parts{&link_, &voice_, &scale_, loginItem_.get(), &settings_});
    connect(desktop_.get(), &DesktopTies::showWanted, this, &AppDelegate::showWindow);
    overlay_->setUp();
    menuBar_.setUp();
    connect(&voice_, &VoiceControl::microphonesChanged, &menuBar_, &MenuBar::refresh);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &AppDelegate::end);
    session::onEndRequested(this, [this] { quit(); });
    if (session::endRequested())
        return false;
    link_.start();
    voice_.resumeIfWanted();
    return true;
}

void AppDelegate::makeWindow()
{
    scale_.suit(factsOf(*QGuiApplication::primaryScreen()));
    window_ = std::make_unique<MainWindow>(settings_, scale_.factor());
    overlay_ = std::make_unique<Overlay>(Overlay::Parts{&link_, &voice_, &scale_, &settings_,
        window_->engine(), [this] { return sightOf(window_.get()); }});
    announcer_ = std::make_unique<Announcer>(Announcer::Sources{
        &link_, &voice_, &questions_, overlay_.get(), loginItem_.get(), &scale_});
    fillWithMainView(*window_, {&link_, &voice_, &questions_, &scale_, this, announcer_.get()});
    window_->setKeyTaker([this](const QKeyEvent &key) {
        if (key.key() == Qt::Key_Menu || key.key() == Qt::Key_F10) {
            openMenu({});
            return true;
        }
        return handleKey({key.key(), key.modifiers(), key.text(), key.isAutoRepeat()});
    });
    connect(window_.get(), &MainWindow::closed, this, &AppDelegate::windowClosed);
    connect(
        window_.get(), &QQuickWindow::frameSwapped, this,
        [] {
            session::takeRoomForShaders();
            qCDebug(appLog) << "first frame after" << Link::clock() << "s of uptime";
        },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

// ---- the window ----

void AppDelegate::showWindow()
{
    window_->bringForward();
    if (desktop_)
        desktop_->windowShown();
    // The engine may be about to ask for the questions itself, and they are said once.
    QTimer::singleShot(150ms, this, [this] {
        if (std::exchange(closedHalfWay_, false) && link_.welcome)
            questions_.say();
    });
}

void AppDelegate::openMenu(QPoint place)
{
    windowMenu_.open(*window_, place, scale_.factor());
}

void AppDelegate::windowClosed()
{
    closedHalfWay_ = link_.welcome;
    if (std::exchange(toldBackground_, true))
        return;
    link_.send(u"~bg\n"_s);
    desktop_->windowClosed();
    if (!menuBar_.reachable())
        tellHowToComeBack();
}

/// Spoken, for a screen reader does not read what a closed window announces.
void AppDelegate::tellHowToComeBack()
{
    const QString text = tr("I’m still here, without a window. Start me again to bring it back.");
    link_.speak(text);
    qCInfo(appLog) << "no tray to reach Kelo from: start it again to bring its window back";
}

bool AppDelegate::mainWindowHidden() const
{
    return !window_->isVisible();
}

void AppDelegate::setFullScreen(bool on)
{
    window_->setFullScreen(on);
}

// ---- keys ----

bool AppDelegate::handleKey(const KeyPress &press)
{
    using Kind = KeyAction::Kind;
    FocusKeeper *focus = FocusKeeper::of(*window_);
    const KeyAction action =
        keyAction(press, {link_.welcome, focus->kind(), link_.typing, link_.visual});
    switch (action.kind) {
    case Kind::PassOn:
        break;
    case Kind::OfferToWelcome: {
        const Link::KeyTaker &taker = link_.welcomeKey;
        return taker && taker(press.key, press.text);
    }
    case Kind::Ignore:
        return true;
    case Kind::LeaveControls:
        focus->leave();
        return true;
    case Kind::LeaveVisualiser:
        link_.showVisualiser(false);
        return true;
    case Kind::ToggleVisualiser:
        link_.showVisualiser(!link_.visual);
        return true;
    case Kind::ChooseFile:
        link_.chooseFile();
        return true;
    case Kind::Send:
        link_.send(action.text);
        return true;
    }
    return false;
}

// ---- what else the link asks for ----

void AppDelegate::showOverlay(double seconds)
{
    overlay_->show(seconds);
}

bool AppDelegate::setLoginItem(bool on)
{
    return loginItem_->set(on);
}

bool AppDelegate::loginItemOn() const
{
    return loginItem_->on();
}

void AppDelegate::setHighContrast(bool on)
{
    Hud::shared().setContrast(on);
}

void AppDelegate::chooseMidiFile(const QString &folder, MidiChooser::Chosen chosen)
{
    midiChooser_.open(*window_, folder, chosen);
}

// ---- what the menus ask for ----

MenuFacts AppDelegate::menuFacts() const
{
    MenuFacts facts{link_.assistant, voice_.on, overlay_->enabled(), loginItemOn()};
    for (const MicrophoneDevice &each : voice_.microphones())
        facts.microphones.append({each.id, each.name});
    facts.globalKeys = desktop_ && desktop_->keys().possible();
    facts.wantedMicrophone = voice_.wantedMicrophone();
    return facts;
}

void AppDelegate::choose(MenuAction action, const QString &id)
{
    switch (action) {
    case MenuAction::OpenWindow:
        return showWindow();
    case MenuAction::WelcomeAgain:
        link_.askWelcome();
        return showWindow();
    case MenuAction::NaturalVoice:
        return link_.send(u"~say install the natural voice\n"_s);
    case MenuAction::ToggleVoice:
        return voice_.toggle();
    case MenuAction::TogglePanel:
        return overlay_->setEnabled(!overlay_->enabled());
    case MenuAction::ToggleLogin:
        setLoginItem(!loginItemOn());
        return;
    case MenuAction::UseMicrophone:
        return voice_.chooseMicrophone(id);
    case MenuAction::Larger:
        return scale_.larger();
    case MenuAction::Smaller:
        return scale_.smaller();
    case MenuAction::NormalSize:
        return scale_.reset();
    case MenuAction::GlobalKeys:
        return desktop_->keys().want();
    case MenuAction::Minimise:
    case MenuAction::HideWindow:
        return minimiseWindow();
    case MenuAction::CloseWindow:
        return closeWindow();
    case MenuAction::Quit:
        return quit();
    }
}

// ---- the end ----

void AppDelegate::relaunch()
{
    startAgain(mainWindowHidden());
    quit();
}

void AppDelegate::quit()
{
    // Not QCoreApplication::quit, which closes the window first: that would tell the engine that
    // we go on in the background.
    QCoreApplication::exit(0);
}

void AppDelegate::end()
{
    window_->hide(); // on a busy machine the system takes its time with what is left
    settings_.sync();
    link_.stop();
}

} // namespace kelo
