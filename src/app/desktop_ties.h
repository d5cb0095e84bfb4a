#pragma once

#include "app/desktop/global_keys.h"
#include "app/desktop/notifier.h"
#include "app/desktop/sleep_guard.h"

#include <QObject>
#include <QTimer>

class QSettings;

namespace kelo {

struct DesktopWishes;
class DisplayScale;
class Link;
class LoginItem;
class VoiceControl;

/// What goes on that somebody may be at who touches neither keyboard nor mouse.
struct Doings {
    QString mode;
    bool rolling = false;
    bool paused = false;
    double lastSign = 0; ///< seconds of uptime: the user pressed a key of the piano, or was heard
};

/// For how many seconds from `now` on, in seconds of uptime, the screen is not to go dark. A lesson
/// that was left open does not keep it lit for ever; infinite where the end comes by itself.
[[nodiscard]] double awakeFor(const Doings &doings, double now);

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
    void lookAtWork();
    void listenNow() const;
    void tellOfSize() const;

    Parts parts_;
    GlobalKeys keys_;
    Notifier notifier_;
    SleepGuard sleepGuard_;
    QTimer lookAgain_;
    double lastWord_ = 0; ///< seconds of uptime: the user was heard, or changed what goes on
};

} // namespace kelo
