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
#include <chrono>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace kelo {

double awakeFor(const Doings &doings, double now)
{
    constexpr std::array practice{
        QStringView(u"teach"), QStringView(u"jazz"), QStringView(u"compose")};
    constexpr double patience = 10 * 60;
    if (doings.rolling && !doings.paused)
        return std::numeric_limits<double>::infinity();
    if (std::ranges::find(practice, doings.mode) == practice.end())
        return 0;
    return std::max(0.0, doings.lastSign + patience - now);
}

DesktopTies::DesktopTies(const Parts &parts, QObject *parent)
    : QObject(parent)
    , parts_(parts)
    , keys_(*parts.settings)
{
    new DesktopSettings([this](const DesktopWishes &wishes) { follow(wishes); }, this);

    const Link *link = parts.link;
    const auto signOfUser = [this, link] {
        lastWord_ = link->uptime();
        lookAtWork();
    };
    for (const auto sign :
        {&Link::modeChanged, &Link::rollingChanged, &Link::pausedChanged, &Link::heardChanged})
        connect(link, sign, this, signOfUser);
    connect(link, &Link::keysChanged, this, &DesktopTies::lookAtWork);
    lookAgain_.setSingleShot(true);
    connect(&lookAgain_, &QTimer::timeout, this, &DesktopTies::lookAtWork);

    connect(link, &Link::speakingChanged, this, &DesktopTies::tellOfSize);
    connect(&keys_, &GlobalKeys::listenPressed, this, &DesktopTies::listenNow);
    connect(&keys_, &GlobalKeys::showPressed, this, &DesktopTies::showWanted);
    connect(&keys_, &GlobalKeys::told, parts.link, &Link::speak);
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

void DesktopTies::lookAtWork()
{
    const Link &link = *parts_.link;
    const double lastKey = link.ripples.isEmpty() ? 0 : link.ripples.constLast().at;
    const double now = link.uptime();
    const double awake =
        awakeFor({link.mode, link.rolling, link.paused, std::max(lastWord_, lastKey)}, now);
    sleepGuard_.keepAwake(awake > 0);
    if (awake > 0 && std::isfinite(awake))
        lookAgain_.start(std::chrono::seconds(static_cast<qint64>(std::ceil(awake))));
    else
        lookAgain_.stop();
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
void DesktopTies::tellOfSize() const
{
    if (parts_.link->speaking || parts_.link->welcome || !parts_.scale->takeNews())
        return;
    parts_.link->speak(
        tr("I draw everything at %1 percent, to suit your screen. Control with plus or minus "
           "makes it larger or smaller.")
            .arg(qRound(parts_.scale->factor() * 100)));
}

} // namespace kelo
