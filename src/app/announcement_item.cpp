#include "app/announcement_item.h"

#include <QAccessible>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelo {

namespace {

/// The connection that Qt's own accessibility keeps under this name.
QDBusConnection accessibilityBus()
{
    return QDBusConnection(u"a11y"_s);
}

/// Some screen reader listens for announcements proper. `reply` lists pairs of a listener and
/// the event it waits for.
bool announcementsAreHeard(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"a(ss)")
        return false;
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    bool heard = false;
    list.beginArray();
    while (!list.atEnd()) {
        QString listener;
        QString event;
        list.beginStructure();
        list >> listener >> event;
        list.endStructure();
        heard = heard || event.startsWith("object:announcement"_L1, Qt::CaseInsensitive);
    }
    list.endArray();
    return heard;
}

void sendAnnouncement(QQuickItem *from, const QString &text)
{
    const auto id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(from));
    auto signal = QDBusMessage::createSignal(u"/org/a11y/atspi/accessible/%1"_s.arg(id),
        u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s);
    constexpr int polite = 1;
    signal.setArguments(
        {QString(), polite, 0, QVariant::fromValue(QDBusVariant(text)), QVariantMap()});
    accessibilityBus().send(signal);
}

} // namespace

AnnouncementItem::AnnouncementItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    hold_.setSingleShot(true);
    hold_.setInterval(1s);
    connect(&hold_, &QTimer::timeout, this, &AnnouncementItem::sayNext);
}

void AnnouncementItem::setAnnouncer(Announcer *announcer)
{
    if (announcer_)
        announcer_->disconnect(this);
    announcer_ = announcer;
    if (announcer_)
        connect(announcer_, &Announcer::said, this, &AnnouncementItem::say);
    Q_EMIT announcerChanged();
}

void AnnouncementItem::say(const QString &text)
{
    waiting_ += text;
    if (!hold_.isActive())
        sayNext();
}

void AnnouncementItem::sayNext()
{
    if (waiting_.isEmpty())
        return;
    text_ = joined(std::exchange(waiting_, {}));
    hold_.start();
    Q_EMIT textChanged();
    if (!QAccessible::isActive())
        return;
    // Screen readers know announcements or, the older ones, speak a notification that shows. Only
    // one of both, or some would say it twice.
    const auto ask = QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s,
        u"/org/a11y/atspi/registry"_s, u"org.a11y.atspi.Registry"_s, u"GetRegisteredEvents"_s);
    const auto *call = new QDBusPendingCallWatcher(accessibilityBus().asyncCall(ask), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
        [this, text = text_](QDBusPendingCallWatcher *done) {
            done->deleteLater();
            if (announcementsAreHeard(done->reply())) {
                sendAnnouncement(this, text);
            } else {
                QAccessibleEvent shows(this, QAccessible::ObjectShow);
                QAccessible::updateAccessibility(&shows);
            }
        });
}

} // namespace kelo
