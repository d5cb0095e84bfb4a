#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace kelo {

/// Knows which control has the keyboard focus, and so what Space, Return and Escape mean, and keeps
/// the focus on something that can be used.
///
/// A control has the focus while it has it in fact: whoever gave it, and for as long as it shows
/// and is enabled. When it hides, is disabled or goes, the next one takes over; where a whole
/// screen gives way to another, that screen's first control does, or the one by which it was left.
/// Where no control had the focus none gets it.
class FocusKeeper : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *screen READ screen WRITE setScreen NOTIFY screenChanged)

public:
    /// What the keyboard focus is on.
    enum class Kind {
        Nothing, ///< that keys could be meant for
        Reading, ///< a text to be read, or moved in with the arrows
        EmptyField,
        FilledField,
        Choice, ///< one that is on or off
        Button,
    };

    using QQuickItem::QQuickItem;

    /// The one in `window`; null while nothing is in it.
    [[nodiscard]] static FocusKeeper *of(const QQuickWindow &window);

    /// The screen that shows, of several in one place.
    [[nodiscard]] QQuickItem *screen() const { return screen_; }
    void setScreen(QQuickItem *screen);

    [[nodiscard]] Kind kind();
    /// Takes the focus away from the controls; keys go to the item that this one stands in.
    void leave();

Q_SIGNALS:
    void screenChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void follow();
    void hold(QQuickItem *control);
    void lookAround();
    void settleSoon();
    void settle();
    [[nodiscard]] QQuickItem *successor();

    QPointer<QQuickItem> screen_;
    QPointer<QQuickItem> held_; // the control that has the focus, or had it when it went
    QPointer<QQuickItem> heldScreen_; // the screen around it
    bool holding_ = false; // also while `held_` is gone for good
    QList<QPointer<QQuickItem>> stops_; // what Tab stops at, shown or not, in its order
    qsizetype place_ = -1; // of `held_` among them
    QHash<QQuickItem *, QPointer<QQuickItem>> openers_; // by the screen that was left through them
};

} // namespace kelo
