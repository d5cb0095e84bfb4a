#include "app/desktop/notifier.h"

#include "app/desktop/portal.h"
#include "app/desktop/sandbox.h"

#include <QDBusConnection>
#include <QDBusMetaType>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;
const QString portalName = u"Notification"_s;

const QString portalId = u"message"_s;
const QString open = u"open"_s;
const QString press = u"default"_s; // what a press on the message itself is called

QDBusMessage serviceCall(const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(service, path, service, method);
    message.setArguments(arguments);
    return message;
}

QDBusMessage forService(const Notifier::Message &message, uint instead)
{
    const QStringList actions{press, message.action, open, message.action};
    const QVariantMap hints{{u"desktop-entry"_s, u"app.kelo.assistant"_s}};
    constexpr int asUsual = -1; // how long it shows
    return serviceCall(u"Notify"_s,
        {u"Kelo"_s, instead, u"app.kelo.assistant"_s, message.title, message.text, actions, hints,
            asUsual});
}

QDBusMessage forPortal(const Notifier::Message &message)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    const QList<QVariantMap> buttons{{{u"label"_s, message.action}, {u"action"_s, open}}};
    return portal::call(portalName, u"AddNotification"_s,
        {portalId,
            QVariantMap{{u"title"_s, message.title}, {u"body"_s, message.text},
                {u"default-action"_s, open}, {u"buttons"_s, QVariant::fromValue(buttons)}}});
}

} // namespace

Notifier::Notifier(QObject *parent)
    : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(
        service, path, service, u"ActionInvoked"_s, this, SLOT(actionInvoked(uint, QString)));
    bus.connect(
        service, path, service, u"ActivationToken"_s, this, SLOT(activationToken(uint, QString)));
    const QDBusMessage any = portal::call(portalName, {}, {});
    bus.connect(any.service(), any.path(), any.interface(), u"ActionInvoked"_s, this,
        SLOT(portalActionInvoked(QDBusMessage)));
}

void Notifier::show(const Message &message)
{
    // Outside a sandbox a portal often cannot tell whose message it is, and nobody hears of the
    // button.
    send(insideSandbox() ? Way::Portal : Way::Service, message, false);
}

void Notifier::send(Way way, const Message &message, bool last)
{
    const bool byPortal = way == Way::Portal;
    portal::send(byPortal ? forPortal(message) : forService(message, shown_), this,
        [this, byPortal, message, last](const QDBusMessage &reply) {
            if (reply.type() == QDBusMessage::ErrorMessage) {
                if (!last)
                    send(byPortal ? Way::Service : Way::Portal, message, true);
                return;
            }
            byPortal_ = byPortal;
            shown_ = byPortal ? 0 : reply.arguments().value(0).toUInt();
        });
}

void Notifier::withdraw()
{
    const auto ignore = [](const QDBusMessage &) {};
    if (std::exchange(byPortal_, false))
        portal::send(portal::call(portalName, u"RemoveNotification"_s, {portalId}), this, ignore);
    if (const uint shown = std::exchange(shown_, 0))
        portal::send(serviceCall(u"CloseNotification"_s, {shown}), this, ignore);
}

void Notifier::portalActionInvoked(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.value(0) == portalId && arguments.value(1) == open)
        Q_EMIT chosen();
}

void Notifier::actionInvoked(uint id, const QString &action)
{
    if (id == shown_ && (action == open || action == press))
        Q_EMIT chosen();
}

void Notifier::activationToken(uint id, const QString &token) const
{
    // Qt takes it from there when it asks the compositor to bring a window forward.
    if (id == shown_)
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

} // namespace kelo
