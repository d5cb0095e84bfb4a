#include "app/tray_presence.h"

#include "app/x11.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

} // namespace

TrayPresence::TrayPresence(QObject *parent)
    : QObject(parent)
    , watcher_(watcherName, QDBusConnection::sessionBus(),
          QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration)
{
}

TrayPresence::~TrayPresence()
{
    qGuiApp->removeNativeEventFilter(this);
}

void TrayPresence::watch()
{
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayPresence::lookOnBus);
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { onBus_ = false; });
    QDBusConnection::sessionBus().connect(watcherName, watcherPath, watcherName,
        u"StatusNotifierHostRegistered"_s, this, SLOT(lookOnBus()));
    lookOnBus();
    qGuiApp->installNativeEventFilter(this);
    lookOnX11();
}

void TrayPresence::lookOnBus()
{
    auto ask = QDBusMessage::createMethodCall(
        watcherName, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    ask.setArguments({watcherName, u"IsStatusNotifierHostRegistered"_s});
    ask.setAutoStartService(false);
    const auto *call =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(ask), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *done) {
        done->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *done;
        if (reply.isError() || !reply.value().variant().toBool())
            return;
        onBus_ = true;
        Q_EMIT arrived();
    });
}

void TrayPresence::lookOnX11()
{
    if (!x11::hasTray())
        return;
    onX11_ = true;
    Q_EMIT arrived();
}

bool TrayPresence::nativeEventFilter(const QByteArray &type, void *message, qintptr * /*result*/)
{
    if (type == "xcb_generic_event_t" && x11::announcesTray(message))
        QMetaObject::invokeMethod(this, &TrayPresence::lookOnX11, Qt::QueuedConnection);
    return false;
}

} // namespace kelo
