#include "app/tray_presence.h"

#include "app/x11.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>

#include <cstdint>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

/// The selection that a tray of the old kind, which embeds icons, holds.
xcb_atom_t traySelection(xcb_connection_t *x)
{
    static const xcb_atom_t selection = x11::atom(x, "_NET_SYSTEM_TRAY_S0");
    return selection;
}

/// A native event, as an event filter gets it, says that such a tray has just come.
bool announcesTray(const void *event)
{
    xcb_connection_t *x = x11::connection();
    const auto *message = static_cast<const xcb_client_message_event_t *>(event);
    constexpr std::uint8_t type = 0x7f; // the rest says whether it was sent by another program
    if (!x || (message->response_type & type) != XCB_CLIENT_MESSAGE)
        return false;
    static const xcb_atom_t manager = x11::atom(x, "MANAGER");
    return message->type == manager && message->data.data32[1] == traySelection(x);
}

} // namespace

TrayPresence::TrayPresence(QObject *parent)
    : QObject(parent)
    , watcher_(watcherName, QDBusConnection::sessionBus(),
          QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration)
{
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
    xcb_connection_t *x = x11::connection();
    if (!x || !x11::hasOwner(x, traySelection(x)))
        return;
    onX11_ = true;
    Q_EMIT arrived();
}

bool TrayPresence::nativeEventFilter(const QByteArray &type, void *message, qintptr * /*result*/)
{
    if (type == "xcb_generic_event_t" && announcesTray(message))
        QMetaObject::invokeMethod(this, &TrayPresence::lookOnX11, Qt::QueuedConnection);
    return false;
}

} // namespace kelo
