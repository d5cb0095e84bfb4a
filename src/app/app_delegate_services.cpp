#include "app/app_delegate.h"
#include "app/login_item.h"
#include "app/overlay.h"
#include "hud/theme.h"
#include "link/link.h"
#include "voice/voice_control.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace kelo {

// ---- what the link asks for ----

void AppDelegate::showOverlay(double seconds)
{
    if (overlay_)
        overlay_->show(seconds);
}

bool AppDelegate::setLoginItem(bool on)
{
    return LoginItem::ofThisProcess().set(on);
}

bool AppDelegate::loginItemOn() const
{
    return LoginItem::ofThisProcess().on();
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
    fileDialog_ = new QFileDialog(
        nullptr, tr("Choose a MIDI file to play"), folder.isEmpty() ? QDir::homePath() : folder);
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

// ---- what the tray menu asks for ----

TrayFacts AppDelegate::trayFacts() const
{
    return {link_.assistant, voice_.on, overlay_->enabled(), loginItemOn()};
}

void AppDelegate::choose(TrayAction action)
{
    switch (action) {
    case TrayAction::OpenWindow:
        return showWindow();
    case TrayAction::WelcomeAgain:
        link_.welcome = true;
        return showWindow();
    case TrayAction::NaturalVoice:
        return link_.send(u"~say install the natural voice\n"_s);
    case TrayAction::ToggleVoice:
        return voice_.toggle();
    case TrayAction::TogglePanel:
        return overlay_->setEnabled(!overlay_->enabled());
    case TrayAction::ToggleLogin:
        setLoginItem(!loginItemOn());
        return;
    case TrayAction::Quit:
        return quit();
    }
}

} // namespace kelo
