#pragma once

#include <QDBusMessage>
#include <QObject>

namespace kelo {

/// One message among the desktop's notifications, with one thing to do about it. Never blocks; a
/// desktop without notifications shows none.
class Notifier : public QObject {
    Q_OBJECT

public:
    struct Message {
        QString title;
        QString text;
        QString action; ///< what its button says
    };

    explicit Notifier(QObject *parent = nullptr);

    /// In place of what it showed before.
    void show(const Message &message);
    void withdraw();

Q_SIGNALS:
    /// The button was pressed, or the message itself.
    void chosen();

private Q_SLOTS:
    void portalActionInvoked(const QDBusMessage &signal);
    void actionInvoked(uint id, const QString &action);
    void activationToken(uint id, const QString &token) const;

private:
    /// The ways to show a message. Where one fails the other is tried.
    enum class Way { Service, Portal };

    void send(Way way, const Message &message, bool last);

    uint shown_ = 0; // what the service calls it; 0 for none
    bool byPortal_ = false;
};

} // namespace kelo
