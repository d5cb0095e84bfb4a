#include "app/app_delegate.h"

#include "app/arguments.h"
#include "app/launch.h"
#include "app/main_view.h"
#include "app/session.h"
#include "app/window_frame.h"
#include "hud/theme.h"
#include "link/link.h"
#include "voice/voice_control.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QProcess>
#include <QQuickItem>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(appLog, "kelo.app")

namespace kelo {

namespace {

QPointer<AppDelegate> theDelegate; // NOLINT(*-avoid-non-const-global-variables): named `shared`

} // namespace

AppDelegate::AppDelegate(Link &link, VoiceControl &voice, QObject *parent)
    : QObject(parent)
    , link_(link)
    , voice_(voice)
{
    link_.setShell(this);
    link_.setEars(&voice_);
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

    window_->installEventFilter(this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &AppDelegate::end);
    session::onEndRequested(this, [this] { quit(); });
    link_.start();
    if (settings_.value(u"voice"_s, false).toBool())
        voice_.begin();
}

void AppDelegate::makeWindow()
{
    window_ = std::make_unique<QQuickView>();
    window_->setTitle(u"Kelo"_s);
    fillWithMainView(*window_, {&link_, &voice_, this});
    WindowFrame::restore(*window_, settings_);
    connect(
        window_.get(), &QQuickWindow::frameSwapped, this,
        [] { qCDebug(appLog) << "first frame after" << Link::clock() << "s of uptime"; },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

// ---- the window ----

void AppDelegate::showWindow()
{
    if (window_->windowStates().testFlag(Qt::WindowMinimized))
        window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    window_->setVisible(true);
    window_->raise();
    window_->requestActivate();
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
    if (!std::exchange(toldBackground_, true))
        link_.send(u"~bg\n"_s);
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
        return handleKey({key->key(), key->modifiers(), key->text()});
    }
    if (watched == window_.get() && event->type() == QEvent::Close)
        windowClosed();
    return QObject::eventFilter(watched, event);
}

bool AppDelegate::handleKey(const KeyPress &press)
{
    using Kind = KeyAction::Kind;
    const KeyAction action =
        keyAction(press, {link_.welcome, link_.tabbing, link_.typing, link_.visual});
    switch (action.kind) {
    case Kind::PassOn:
        return false;
    case Kind::OfferToWelcome: {
        const Link::KeyTaker &taker = link_.welcomeKey;
        return taker && taker(press.key, press.text);
    }
    case Kind::BeginTabbing:
        link_.tabbing = true;
        return false;
    case Kind::EndTabbing:
        link_.tabbing = false;
        if (QQuickItem *control = window_->activeFocusItem())
            control->setFocus(false);
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

// ---- what the link asks for ----

void AppDelegate::showOverlay(double seconds)
{
    qCDebug(appLog) << "no caption panel in this build; asked for" << seconds << "s";
}

bool AppDelegate::setLoginItem(bool /*on*/)
{
    return false;
}

bool AppDelegate::loginItemOn() const
{
    return false;
}

void AppDelegate::setHighContrast(bool on)
{
    Hud::shared().setContrast(on);
}

void AppDelegate::chooseMidiFile(
    const QString &folder, std::function<void(const QString &path)> chosen)
{
    if (fileDialog_) {
        fileDialog_->raise();
        fileDialog_->activateWindow();
        return;
    }
    fileDialog_ = new QFileDialog(nullptr, tr("Choose a MIDI file to play"),
        folder.isEmpty() ? QDir::homePath() : folder);
    fileDialog_->setAttribute(Qt::WA_DeleteOnClose);
    fileDialog_->setFileMode(QFileDialog::ExistingFile);
    fileDialog_->setMimeTypeFilters({u"audio/midi"_s});
    fileDialog_->setModal(true);
    connect(fileDialog_, &QFileDialog::fileSelected, this, chosen);
    fileDialog_->winId(); // makes the window behind it, so that it can be tied to ours
    fileDialog_->windowHandle()->setTransientParent(window_.get());
    fileDialog_->show();
}

void AppDelegate::relaunch()
{
    QStringList arguments{
        u"-c"_s, u"sleep 1.5; exec \"$0\" \"$@\""_s, QCoreApplication::applicationFilePath()};
    arguments += QCoreApplication::arguments().sliced(1);
    QProcess::startDetached(u"/bin/sh"_s, arguments);
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
    if (window_->isVisible())
        WindowFrame::save(*window_, settings_);
    link_.stop();
}

} // namespace kelo
