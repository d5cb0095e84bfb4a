#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

namespace kelo {

/// One instance per data directory: the first holds a local socket, a second finds it there,
/// asks the first to come forward and ends. With that it hands over what the desktop gave it as a
/// sign that the user wants to see it.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    explicit SingleInstance(const QString &dataDirectory, QObject *parent = nullptr);

    /// True when another instance was there and has been asked to come forward.
    /// One that is being started is waited for.
    [[nodiscard]] bool raisedAnother();
    /// Becomes the instance that others find.
    void listen();
    /// Is none of those any more: a start from here on is a first one.
    void stopListening() { server_.close(); }

Q_SIGNALS:
    /// Somebody started the program a second time.
    void raiseRequested();

private:
    void hear(QLocalSocket *caller);

    QString name_;
    QLockFile starting_; // held by who has found nobody, until others find it
    QLocalServer server_;
};

} // namespace kelo
