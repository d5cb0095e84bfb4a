#include "app/desktop/global_keys.h"

#include "app/desktop/portal.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSettings>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString name = u"GlobalShortcuts"_s;
const QString wantedKey = u"globalKeys"_s;
const QString shortcuts = u"shortcuts"_s;
const QString listen = u"listen"_s;
const QString show = u"show"_s;
// The same at every start: a desktop that is not told which program asks keeps the user's choice
// under this name.
const QString sessionToken = u"kelo"_s;

struct Shortcut {
    QString id;
    QVariantMap about;
};

QDBusArgument &operator<<(QDBusArgument &to, const Shortcut &shortcut)
{
    to.beginStructure();
    to << shortcut.id << shortcut.about;
    to.endStructure();
    return to;
}

const QDBusArgument &operator>>(const QDBusArgument &from, Shortcut &shortcut)
{
    from.beginStructure();
    from >> shortcut.id >> shortcut.about;
    from.endStructure();
    return from;
}

QList<Shortcut> wanted()
{
    const auto about = [](const QString &description, const QString &trigger) {
        return QVariantMap{{u"description"_s, description}, {u"preferred_trigger"_s, trigger}};
    };
    return {{listen, about(GlobalKeys::tr("Listen now"), u"CTRL+ALT+k"_s)},
        {show, about(GlobalKeys::tr("Show Kelo"), u"CTRL+ALT+SHIFT+k"_s)}};
}

QList<Shortcut> given(const QVariantMap &results)
{
    return qdbus_cast<QList<Shortcut>>(results.value(shortcuts));
}

/// What the desktop says the keys are.
QStringList triggers(const QVariantMap &results)
{
    QStringList found;
    for (const Shortcut &each : given(results)) {
        const QString trigger = each.about.value(u"trigger_description"_s).toString();
        if (!trigger.isEmpty())
            found += each.about.value(u"description"_s).toString() + u": "_s + trigger;
    }
    return found;
}

} // namespace

GlobalKeys::GlobalKeys(QSettings &settings, QObject *parent)
    : QObject(parent)
    , settings_(settings)
{
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<QList<Shortcut>>();
    const QDBusMessage any = portal::call(name, {}, {});
    QDBusConnection::sessionBus().connect(any.service(), any.path(), any.interface(),
        u"Activated"_s, this, SLOT(activated(QDBusMessage)));
    auto ask = QDBusMessage::createMethodCall(
        any.service(), any.path(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    ask.setArguments({any.interface(), u"version"_s});
    portal::send(ask, this, [this](const QDBusMessage &reply) {
        possible_ = reply.type() == QDBusMessage::ReplyMessage;
        if (possible_ && settings_.value(wantedKey).toBool())
            openSession();
    });
}

void GlobalKeys::want()
{
    if (!possible_)
        return;
    asked_ = true;
    settings_.setValue(wantedKey, true);
    if (session_.isEmpty())
        openSession();
    else
        bind();
}

void GlobalKeys::openSession()
{
    // Plasma 5 takes the shortcuts from here alone, and says at once which keys they have. To bind
    // them shows its settings each time, which nobody wants at every start.
    portal::Request::send(portal::call(name, u"CreateSession"_s, {}),
        {{u"session_handle_token"_s, sessionToken}, {shortcuts, QVariant::fromValue(wanted())}},
        this, [this](bool granted, const QVariantMap &results) {
            session_ = granted ? results.value(u"session_handle"_s).toString() : QString();
            if (granted && (asked_ || given(results).isEmpty()))
                bind();
        });
}

void GlobalKeys::bind()
{
    portal::Request::send(portal::call(name, u"BindShortcuts"_s,
                              {QVariant::fromValue(QDBusObjectPath(session_)),
                                  QVariant::fromValue(wanted()), QString()}),
        {}, this, [this](bool granted, const QVariantMap &results) {
            if (!granted)
                settings_.setValue(wantedKey, false);
            if (!std::exchange(asked_, false))
                return;
            const QStringList keys = triggers(results);
            Q_EMIT told(!granted ? tr("The desktop gave me no keys.")
                    : keys.isEmpty()
                    ? tr("You can choose my keys in the settings of your desktop.")
                    : tr("These keys reach me from everywhere. %1.").arg(keys.join(u". "_s)));
        });
}

void GlobalKeys::activated(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    const QString session = arguments.value(0).value<QDBusObjectPath>().path();
    if (session_.isEmpty() || session != session_)
        return;
    const QString id = arguments.value(1).toString();
    if (id == listen)
        Q_EMIT listenPressed();
    else if (id == show)
        Q_EMIT showPressed();
}

} // namespace kelo
