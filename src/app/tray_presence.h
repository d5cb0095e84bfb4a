#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusServiceWatcher>
#include <QObject>

namespace kelo {

/// Knows when the desktop has a place for tray icons. Asking Qt would settle the answer for the
/// life of the process, so it is not asked before there is one.
class TrayPresence : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit TrayPresence(QObject *parent = nullptr);

    /// A tray was there when last heard of.
    [[nodiscard]] bool present() const { return onBus_ || onX11_; }

    /// Looks for a tray that is there already, then goes on watching.
    void watch();

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

Q_SIGNALS:
    /// A tray is there, or another one than before: an icon must be made for it.
    void arrived();

private Q_SLOTS:
    void lookOnBus();

private:
    void lookOnX11();

    QDBusServiceWatcher watcher_;
    bool onBus_ = false;
    bool onX11_ = false;
};

} // namespace kelo
