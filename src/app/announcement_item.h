#pragma once

#include "app/announcer.h"

#include <QQuickItem>
#include <QTimer>

namespace kelo {

/// The place in the display that screen readers hear announcements from. What comes while the last
/// one is still being fetched waits and is said in one piece. It draws nothing; give it the
/// accessible role of a notification and `text` as its name.
class AnnouncementItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kelo::Announcer *announcer READ announcer WRITE setAnnouncer NOTIFY announcerChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    explicit AnnouncementItem(QQuickItem *parent = nullptr);

    [[nodiscard]] Announcer *announcer() const { return announcer_; }
    void setAnnouncer(Announcer *announcer);
    [[nodiscard]] QString text() const { return text_; }

Q_SIGNALS:
    void announcerChanged();
    void textChanged();

private:
    void say(const QString &text);
    void sayNext();

    QPointer<Announcer> announcer_;
    QString text_;
    QStringList waiting_;
    QTimer hold_; // a screen reader that is told of a new text asks for it a moment later
};

} // namespace kelo
