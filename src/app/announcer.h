#pragma once

#include "app/announcement_queue.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace kelo {

class DisplayScale;
class Link;
class LoginItem;
class Overlay;
class VoiceControl;
class WelcomeQuestions;

/// Tells users of a screen reader in words what the display shows and the engine does not speak:
/// every change of state, once, with its new value.
class Announcer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("handed to the display by the application")

public:
    /// What is listened to.
    struct Sources {
        Link *link = nullptr;
        VoiceControl *voice = nullptr;
        WelcomeQuestions *questions = nullptr;
        Overlay *overlay = nullptr;
        LoginItem *login = nullptr;
        DisplayScale *scale = nullptr;
    };

    explicit Announcer(const Sources &sources, QObject *parent = nullptr);

Q_SIGNALS:
    /// To be announced now.
    void said(const QString &text);

private:
    template <typename Sender, typename Signal>
    void follow(Topic topic, Sender *sender, Signal changed, std::function<QString()> text);
    void followLink(Link *link);
    void happened(Topic topic, const QString &text);
    void sayWhatIsDue();
    void schedule();

    Link *link_;
    AnnouncementQueue queue_;
    QTimer timer_;
};

} // namespace kelo
