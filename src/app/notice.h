#pragma once

#include "app/announcer.h"

#include <QQuickItem>

namespace kelo {

/// The place in the display that screen readers hear announcements from. It draws nothing; give
/// it the accessible role of a notification and `text` as its name.
class Notice : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kelo::Announcer *announcer READ announcer WRITE setAnnouncer NOTIFY announcerChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    using QQuickItem::QQuickItem;

    [[nodiscard]] Announcer *announcer() const { return announcer_; }
    void setAnnouncer(Announcer *announcer);
    [[nodiscard]] QString text() const { return text_; }

Q_SIGNALS:
    void announcerChanged();
    void textChanged();

private:
    void say(const QString &text);

    QPointer<Announcer> announcer_;
    QString text_;
};

} // namespace kelo
