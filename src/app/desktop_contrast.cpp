#include "app/desktop_contrast.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// The answer of the settings portal: 1 for more contrast, in a variant within a variant.
bool prefersMore(const QDBusPendingReply<QDBusVariant> &reply)
{
    if (reply.isError())
        return false;
    const QVariant inner = reply.value().variant();
    return (inner.canConvert<QDBusVariant>() ? inner.value<QDBusVariant>().variant() : inner)
               .toUInt()
        == 1;
}

} // namespace

void askForHighContrast(QObject *context, std::function<void()> preferred)
{
    auto ask = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
        u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"Read"_s);
    ask.setArguments({u"org.freedesktop.appearance"_s, u"contrast"_s});
    const auto *call =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(ask), context);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, context,
        [preferred = std::move(preferred)](QDBusPendingCallWatcher *done) {
            done->deleteLater();
            if (prefersMore(*done))
                preferred();
        });
}

} // namespace kelo
