#include "app/desktop/portal.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>

using namespace Qt::StringLiterals;

namespace kelo::portal {

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;

/// Where the portal answers the request that has this name.
QString requestPath(const QString &token)
{
    QString sender = QDBusConnection::sessionBus().baseService().sliced(1);
    return path + u"/request/"_s + sender.replace(u'.', u'_') + u'/' + token;
}

} // namespace

QDBusMessage call(const QString &name, const QString &method, const QVariantList &arguments)
{
    auto message =
        QDBusMessage::createMethodCall(service, path, u"org.freedesktop.portal."_s + name, method);
    message.setArguments(arguments);
    return message;
}

void send(const QDBusMessage &message, QObject *context,
    std::function<void(const QDBusMessage &)> answered)
{
    const auto *watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
        [answered = std::move(answered)](QDBusPendingCallWatcher *done) {
            done->deleteLater();
            answered(done->reply());
        });
}

QString newToken()
{
    static int last = 0; // NOLINT(*-avoid-non-const-global-variables): the GUI thread's own
    return u"kelo%1"_s.arg(++last);
}

Request::Request(QObject *context, Answered answered)
    : QObject(context)
    , answered_(std::move(answered))
{
}

void Request::send(QDBusMessage message, QVariantMap options, QObject *context, Answered answered)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return answered(false, {});
    auto *request = new Request(context, std::move(answered));
    const QString token = newToken();
    options.insert(u"handle_token"_s, token);
    message << options;
    // Before the call, or an answer that comes at once would be missed.
    QDBusConnection::sessionBus().connect(service, requestPath(token),
        u"org.freedesktop.portal.Request"_s, u"Response"_s, request,
        SLOT(responded(uint, QVariantMap)));
    portal::send(message, request, [request](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage)
            request->responded(2, {});
    });
}

void Request::responded(uint response, const QVariantMap &results)
{
    deleteLater();
    if (const Answered answered = std::exchange(answered_, {}))
        answered(response == 0, results);
}

} // namespace kelo::portal
