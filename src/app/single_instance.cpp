#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(appLog)

namespace kelo {

namespace {

constexpr int patience = 500; // milliseconds; a local socket answers at once or not at all

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
{
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = server_.nextPendingConnection())
            caller->deleteLater();
        Q_EMIT raiseRequested();
    });
}

bool SingleInstance::raisedAnother() const
{
    QLocalSocket socket;
    socket.connectToServer(name_);
    return socket.waitForConnected(patience);
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(name_); // left behind by an instance that crashed
    if (!server_.listen(name_))
        qCWarning(appLog) << "a second start will not find this one:" << server_.errorString();
}

} // namespace kelo
