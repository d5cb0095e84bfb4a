#include "app/app_delegate.h"

#include "app/announcer.h"
#include "app/arguments.h"
#include "app/desktop_contrast.h"
#include "app/kelo_icon.h"
#include "app/launch.h"
#include "app/main_view.h"
#include "app/overlay.h"
#include "app/session.h"
#include "app/window_frame.h"
#include "app/window_sight.h"
#include "link/link.h"
#include "visual/motion/frame_pacer.h"
#include "voice/voice_control.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLoggingCategory>

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
    , menuBar_([this] { return trayFacts(); })
{
    link_.setShell(this);
    link_.setEars(&voice_);
    connect(&menuBar_, &MenuBar::chosen, this, &AppDelegate::choose);
    connect(&questions_, &WelcomeQuestions::asked, this, [this] { closedHalfWay_ = false; });
    connect(&questions_, &WelcomeQuestions::finished, this,
        [this] { settings_.setValue(u"reader"_s, questions_.answers().reader); });
}

AppDelegate::~AppDelegate()
{
    link_.setShell(nullptr);
    link_.setEars(nullptr);
}

AppDelegate *AppDelegate::shared()
{
    return theDelegate;
}

void AppDelegate::launch(const Arguments &arguments)
{
    makeWindow();
    theDelegate = this;
    const LaunchFacts facts{
        arguments.hidden, session::startedByLogin(), loginItemOn(), Link::clock()};
    if (!startsHidden(facts))
        showWindow();

    overlay_->setUp();
    menuBar_.setUp();
    window_->installEventFilter(this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &AppDelegate::end);
    session::onEndRequested(this, [this] { quit(); });
    if (!settings_.contains(u"contrast"_s)) {
        askForHighContrast(this, [this] { // not kept: it goes on following the desktop
            link_.contrast = true;
            setHighContrast(true);
        });
    }
    link_.start();
    voice_.resumeIfWanted();
}

void AppDelegate::makeWindow()
{
    window_ = std::make_unique<QQuickView>();
    window_->setTitle(u"Kelo"_s);
    window_->setIcon(keloIcon());
    overlay_ = std::make_unique<Overlay>(Overlay::Parts{
        &link_, &voice_, &settings_, window_->engine(), [this] { return sightOf(window_.get()); }});
    announcer_ = std::make_unique<Announcer>(
        Announcer::Sources{&link_, &voice_, &questions_, overlay_.get(), &scale_, &settings_});
    fillWithMainView(*window_, {&link_, &voice_, &questions_, &scale_, this, announcer_.get()});
    WindowFrame::restore(*window_, settings_);
    watchSight();
    connect(
        window_.get(), &QQuickWindow::frameSwapped, this,
        [] { qCDebug(appLog) << "first frame after" << Link::clock() << "s of uptime"; },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void AppDelegate::watchSight()
{
    const auto look = [this] {
        FramePacer::setCovered(
            *window_, window_->isExposed() && sightOf(window_.get()) == MainWindow::Unseen);
    };
    connect(&sightTimer_, &QTimer::timeout, this, look);
    connect(window_.get(), &QWindow::activeChanged, this, look);
    sightTimer_.start(1s);
}

// ---- the window ----

void AppDelegate::showWindow()
{
    if (window_->windowStates().testFlag(Qt::WindowMinimized))
        window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    window_->setVisible(true);
    window_->raise();
    window_->requestActivate();
    if (std::exchange(closedHalfWay_, false))
        questions_.say();
}

void AppDelegate::hideWindow()
{
    window_->hide();
}

void AppDelegate::minimiseWindow()
{
    window_->setWindowStates(window_->windowStates() | Qt::WindowMinimized);
}

void AppDelegate::closeWindow()
{
    window_->close();
}

void AppDelegate::windowClosed()
{
    WindowFrame::save(*window_, settings_);
    closedHalfWay_ = link_.welcome;
    if (std::exchange(toldBackground_, true))
        return;
    link_.send(u"~bg\n"_s);
    if (!menuBar_.reachable())
        tellHowToComeBack();
}

/// Spoken, for a screen reader does not read what a closed window announces.
void AppDelegate::tellHowToComeBack()
{
    const QString text = tr("I’m still here, without a window. Start me again to bring it back.");
    link_.send(u"~speak "_s + text + u'\n');
    qCInfo(appLog) << "no tray to reach Kelo from: start it again to bring its window back";
}

bool AppDelegate::mainWindowHidden() const
{
    return window_ && !window_->isVisible();
}

void AppDelegate::setFullScreen(bool on)
{
    if (!window_->isVisible())
        return;
    window_->setWindowStates(window_->windowStates().setFlag(Qt::WindowFullScreen, on));
}

// ---- keys ----

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window_.get() && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        return handleKey({key->key(), key->modifiers(), key->text(), key->isAutoRepeat()});
    }
    if (watched == window_.get() && event->type() == QEvent::Close)
        windowClosed();
    return QObject::eventFilter(watched, event);
}

bool AppDelegate::handleKey(const KeyPress &press)
{
    using Kind = KeyAction::Kind;
    FocusKeeper *focus = FocusKeeper::of(*window_);
    const KeyAction action =
        keyAction(press, {link_.welcome, focus->kind(), link_.typing, link_.visual});
    switch (action.kind) {
    case Kind::PassOn:
        return false;
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
        link_.visual = false;
        return true;
    case Kind::ToggleVisualiser:
        link_.visual = !link_.visual;
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

// ---- the end ----

void AppDelegate::quit()
{
    // Not QCoreApplication::quit, which closes the window first: that would tell the engine that
    // we go on in the background.
    QCoreApplication::exit(0);
}

void AppDelegate::end()
{
    if (window_->isVisible())
        WindowFrame::save(*window_, settings_);
    link_.stop();
}

} // namespace kelo
