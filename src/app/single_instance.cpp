#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(appLog)

namespace kelo {

namespace {

constexpr const char *activationToken = "XDG_ACTIVATION_TOKEN";
constexpr qint64 longestToken = 4096; // bytes
constexpr int patience = 500; // milliseconds; a local socket answers at once or not at all
constexpr int startPatience = 2000; // with another start, which takes next to no time

QString socketName(const QString &dataDirectory)
{
    const QByteArray path = QDir(dataDirectory).absolutePath().toUtf8();
    const auto digest = QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex();
    return u"kelo-"_s + QString::fromLatin1(digest.first(16));
}

} // namespace

SingleInstance::SingleInstance(const QString &dataDirectory, QObject *parent)
    : QObject(parent)
    , name_(socketName(dataDirectory))
    , starting_(QDir::temp().filePath(name_ + u".lock"_s))
{
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = server_.nextPendingConnection())
            hear(caller);
    });
}

bool SingleInstance::raisedAnother()
{
    starting_.tryLock(startPatience); // without it nothing but a second start at once goes wrong
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (!socket.waitForConnected(patience))
        return false;
    // The compositor let this start come forward, and it alone.
    socket.write(qgetenv(activationToken));
    socket.waitForBytesWritten(patience);
    return true;
}

void SingleInstance::hear(QLocalSocket *caller)
{
    caller->setReadBufferSize(longestToken);
    connect(caller, &QLocalSocket::disconnected, this, [this, caller] {
        if (const QByteArray token = caller->readAll(); !token.isEmpty())
            qputenv(activationToken, token); // where Qt takes it from
        caller->deleteLater();
        Q_EMIT raiseRequested();
    });
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(name_); // left behind by an instance that crashed
    if (!server_.listen(name_))
        qCWarning(appLog) << "a second start will not find this one:" << server_.errorString();
    starting_.unlock();
}

} // namespace kelo
