#pragma once

#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace kelo {

/// What users tell their desktop of how they see. A desktop that says nothing wishes nothing.
struct DesktopWishes {
    bool contrast = false; ///< more than usual
    bool lessMotion = false;
    double textScale = 1;

    friend bool operator==(const DesktopWishes &, const DesktopWishes &) = default;
};

/// Reads the wishes from the desktop's settings portal, and follows them. Never blocks.
class DesktopSettings : public QObject {
    Q_OBJECT

public:
    /// `changed` is called whenever the wishes are others than before.
    explicit DesktopSettings(
        std::function<void(const DesktopWishes &)> changed, QObject *parent = nullptr);

    /// The desktop's setting `key` of `group` has this value.
    void settingChanged(const QString &group, const QString &key, const QVariant &value);

private:
    Q_SLOT void signalled(const QDBusMessage &signal);

    std::function<void(const DesktopWishes &)> changed_;
    DesktopWishes wishes_;
    // Each wish has the name that all desktops share, and an older one.
    bool sharedContrast_ = false;
    bool olderContrast_ = false;
    bool sharedLessMotion_ = false;
    bool olderAnimations_ = true;
};

} // namespace kelo
