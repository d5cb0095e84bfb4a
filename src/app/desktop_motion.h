#pragma once

#include <QDBusVariant>
#include <QObject>

#include <functional>

namespace kelo {

/// Whether the desktop asks for reduced motion, by its settings portal. Never blocks; no desktop to
/// ask has nothing against motion.
class DesktopMotion : public QObject {
    Q_OBJECT

public:
    /// `changed` is called whenever the answer is another than before; at first it is no.
    explicit DesktopMotion(std::function<void(bool reduced)> changed, QObject *parent = nullptr);

    /// The desktop's setting `key` of `group` has this value.
    Q_SLOT void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask(const QString &group, const QString &key);

    std::function<void(bool)> changed_;
    bool asksForLess_ = false; // the setting that all desktops share
    bool animates_ = true; // an older one
    bool reduced_ = false;
};

} // namespace kelo
