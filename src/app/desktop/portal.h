#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include <functional>

/// The desktop portal: what a desktop does for programs that need not know which desktop it is, in
/// a sandbox or out of it. Nothing here blocks, and a desktop without a portal is an answer too.
namespace kelo::portal {

/// A call of a method of the portal's interface `org.freedesktop.portal.NAME`.
[[nodiscard]] QDBusMessage call(
    const QString &name, const QString &method, const QVariantList &arguments);

/// Sends `message` to the session and calls `answered` with the reply or the error, unless
/// `context` is gone by then.
void send(const QDBusMessage &message, QObject *context,
    std::function<void(const QDBusMessage &reply)> answered);

/// Something that the portal answers later, since it may ask the user first.
class Request : public QObject {
    Q_OBJECT

public:
    /// Nothing in `results` where it was refused, which is what `granted` says, or never begun.
    using Answered = std::function<void(bool granted, const QVariantMap &results)>;

    /// Sends the call with `options` as its last argument. It deletes itself once answered.
    static void send(
        QDBusMessage message, QVariantMap options, QObject *context, Answered answered);

private:
    Request(QObject *context, Answered answered);

    Q_SLOT void responded(uint response, const QVariantMap &results);

    Answered answered_;
};

/// A name that no other request or session of this process has.
[[nodiscard]] QString newToken();

} // namespace kelo::portal
