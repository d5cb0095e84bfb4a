#include "app/desktop_ties.h"

#include "app/desktop/desktop_settings.h"
#include "app/desktop/login_item.h"
#include "app/display_scale.h"
#include "link/link.h"
#include "visual/motion/scene_item.h"
#include "voice/voice_control.h"

#include <QSettings>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

bool keepsAwake(const QString &mode, bool rolling, bool paused)
{
    constexpr std::array practice{
        QStringView(u"teach"), QStringView(u"jazz"), QStringView(u"compose")};
    return (rolling && !paused) || std::ranges::find(practice, mode) != practice.end();
}

DesktopTies::DesktopTies(const Parts &parts, QObject *parent)
    : QObject(parent)
    , parts_(parts)
    , keys_(*parts.settings)
{
    new DesktopSettings([this](const DesktopWishes &wishes) { follow(wishes); }, this);

    const Link *link = parts.link;
    const auto lookAtWork = [this, link] {
        sleepGuard_.keepAwake(keepsAwake(link->mode, link->rolling, link->paused));
    };
    connect(link, &Link::modeChanged, this, lookAtWork);
    connect(link, &Link::rollingChanged, this, lookAtWork);
    connect(link, &Link::pausedChanged, this, lookAtWork);

    connect(link, &Link::speakingChanged, this, &DesktopTies::tellOfSize);
    connect(&keys_, &GlobalKeys::listenPressed, this, &DesktopTies::listenNow);
    connect(&keys_, &GlobalKeys::showPressed, this, &DesktopTies::showWanted);
    connect(&keys_, &GlobalKeys::told, this, &DesktopTies::speak);
    connect(&notifier_, &Notifier::chosen, this, &DesktopTies::showWanted);
    connect(parts.login, &LoginItem::refused, this,
        [this] { parts_.link->send(u"~login failed\n"_s); });
}

void DesktopTies::follow(const DesktopWishes &wishes) const
{
    SceneItem::setReducedMotion(wishes.lessMotion);
    parts_.scale->setTextScale(wishes.textScale);
    // Not kept: it goes on following the desktop until the user switches it here.
    if (!parts_.settings->contains(u"contrast"_s) && parts_.link->contrast != wishes.contrast)
        parts_.link->followContrast(wishes.contrast);
}

void DesktopTies::windowClosed()
{
    parts_.login->stay();
    notifier_.show({tr("Kelo goes on in the background"),
        tr("Start it again, or press the button, to bring its window back."), tr("Open Kelo")});
}

/// As if the assistant had been called by its name.
void DesktopTies::listenNow() const
{
    if (!parts_.voice->on)
        parts_.voice->begin();
    parts_.link->send(u"~ear 1 "_s + parts_.link->assistant + u'\n');
}

/// After what is being said now, and not in the midst of the first questions.
void DesktopTies::tellOfSize()
{
    if (parts_.link->speaking || parts_.link->welcome || !parts_.scale->takeNews())
        return;
    speak(tr("I draw everything at %1 percent, to suit your screen. Control with plus or minus "
             "makes it larger or smaller.")
              .arg(qRound(parts_.scale->factor() * 100)));
}

void DesktopTies::speak(const QString &text) const
{
    parts_.link->send(u"~speak "_s + text + u'\n');
}

} // namespace kelo
