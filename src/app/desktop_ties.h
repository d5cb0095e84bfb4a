#pragma once

#include "app/desktop/global_keys.h"
#include "app/desktop/notifier.h"
#include "app/desktop/sleep_guard.h"

#include <QObject>

class QSettings;

namespace kelo {

struct DesktopWishes;
class DisplayScale;
class Link;
class LoginItem;
class VoiceControl;

/// Whether somebody is at it who may touch neither keyboard nor mouse for a long time.
[[nodiscard]] bool keepsAwake(const QString &mode, bool rolling, bool paused);

/// What Kelo and the user's desktop are to each other while it runs: the display follows the
/// desktop's wishes, the desktop stays awake for a lesson, gives Kelo keys, and shows where it is
/// when its window is closed.
class DesktopTies : public QObject {
    Q_OBJECT

public:
    struct Parts {
        Link *link = nullptr;
        VoiceControl *voice = nullptr;
        DisplayScale *scale = nullptr;
        LoginItem *login = nullptr;
        QSettings *settings = nullptr;
    };

    explicit DesktopTies(const Parts &parts, QObject *parent = nullptr);

    [[nodiscard]] GlobalKeys &keys() { return keys_; }

    /// The user has closed the window, for the first time in this run.
    void windowClosed();
    void windowShown() { notifier_.withdraw(); }

Q_SIGNALS:
    void showWanted();

private:
    void follow(const DesktopWishes &wishes) const;
    void listenNow() const;
    void tellOfSize();
    void speak(const QString &text) const;

    Parts parts_;
    GlobalKeys keys_;
    Notifier notifier_;
    SleepGuard sleepGuard_;
};

} // namespace kelo
