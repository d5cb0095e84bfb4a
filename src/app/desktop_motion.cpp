#include "app/desktop_motion.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

const QString sharedGroup = u"org.freedesktop.appearance"_s;
const QString sharedKey = u"reduced-motion"_s; // 1: reduce
const QString olderGroup = u"org.gnome.desktop.interface"_s;
const QString olderKey = u"enable-animations"_s;

} // namespace

DesktopMotion::DesktopMotion(std::function<void(bool)> changed, QObject *parent)
    : QObject(parent)
    , changed_(std::move(changed))
{
    QDBusConnection::sessionBus().connect(service, path, interface, u"SettingChanged"_s, this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(sharedGroup, sharedKey);
    ask(olderGroup, olderKey);
}

void DesktopMotion::ask(const QString &group, const QString &key)
{
    auto read = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    read.setArguments({group, key});
    const auto *call =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
        [this, group, key](QDBusPendingCallWatcher *done) {
            done->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *done;
            if (reply.isValid())
                settingChanged(group, key, reply.value());
        });
}

void DesktopMotion::settingChanged(
    const QString &group, const QString &key, const QDBusVariant &value)
{
    // What is read comes as a variant within a variant.
    const QVariant outer = value.variant();
    const QVariant inner =
        outer.canConvert<QDBusVariant>() ? outer.value<QDBusVariant>().variant() : outer;
    if (group == sharedGroup && key == sharedKey)
        asksForLess_ = inner.toUInt() == 1;
    else if (group == olderGroup && key == olderKey)
        animates_ = inner.toBool();
    else
        return;
    const bool reduced = asksForLess_ || !animates_;
    if (reduced != std::exchange(reduced_, reduced))
        changed_(reduced);
}

} // namespace kelo
