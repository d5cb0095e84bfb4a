#include "app/desktop/sleep_guard.h"

#include "app/desktop/portal.h"

#include <QDBusConnection>
#include <QDBusObjectPath>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr uint suspendAndIdle = 4 | 8; // as the portal counts

QString reason()
{
    return SleepGuard::tr("A lesson or a piece is under way");
}

void close(const QString &handle)
{
    const QDBusMessage any = portal::call({}, {}, {});
    QDBusConnection::sessionBus().send(QDBusMessage::createMethodCall(
        any.service(), handle, u"org.freedesktop.portal.Request"_s, u"Close"_s));
}

QDBusMessage screenSaver(const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.ScreenSaver"_s,
        u"/org/freedesktop/ScreenSaver"_s, u"org.freedesktop.ScreenSaver"_s, method);
    message.setArguments(arguments);
    return message;
}

void uninhibit(uint cookie)
{
    QDBusConnection::sessionBus().send(screenSaver(u"UnInhibit"_s, {cookie}));
}

} // namespace

SleepGuard::~SleepGuard()
{
    letGo();
}

void SleepGuard::keepAwake(bool on)
{
    if (std::exchange(wanted_, on) == on)
        return;
    ++turn_;
    if (on)
        askPortal();
    else
        letGo();
}

void SleepGuard::askPortal()
{
    const QVariantMap options{{u"reason"_s, reason()}};
    portal::send(portal::call(u"Inhibit"_s, u"Inhibit"_s, {QString(), suspendAndIdle, options}),
        this, [this, turn = turn_](const QDBusMessage &reply) {
            const auto handle = reply.arguments().value(0).value<QDBusObjectPath>().path();
            if (reply.type() == QDBusMessage::ErrorMessage) {
                if (turn == turn_)
                    askScreenSaver();
            } else if (turn == turn_) {
                portalHandle_ = handle;
            } else {
                close(handle);
            }
        });
}

void SleepGuard::askScreenSaver()
{
    portal::send(screenSaver(u"Inhibit"_s, {u"Kelo"_s, reason()}), this,
        [this, turn = turn_](const QDBusMessage &reply) {
            if (reply.type() == QDBusMessage::ErrorMessage)
                return;
            const uint cookie = reply.arguments().value(0).toUInt();
            if (turn == turn_)
                cookie_ = cookie;
            else
                uninhibit(cookie);
        });
}

void SleepGuard::letGo()
{
    if (!portalHandle_.isEmpty())
        close(std::exchange(portalHandle_, {}));
    if (cookie_ != 0)
        uninhibit(std::exchange(cookie_, 0));
}

} // namespace kelo
