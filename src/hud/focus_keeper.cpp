#include "hud/focus_keeper.h"

#include <QQuickWindow>

namespace kelo {

namespace {

bool isButton(const QQuickItem &item)
{
    return item.inherits("QQuickAbstractButton");
}

bool isControl(const QQuickItem &item)
{
    return item.activeFocusOnTab() || isButton(item);
}

bool canBeUsed(const QQuickItem *item)
{
    return item && item->window() && item->isVisible() && item->isEnabled();
}

bool holdsFocus(const QQuickItem *item)
{
    return canBeUsed(item) && item->hasActiveFocus() && isControl(*item);
}

QList<QPointer<QQuickItem>> stopsIn(QQuickItem *item)
{
    QList<QPointer<QQuickItem>> stops;
    if (item->activeFocusOnTab())
        stops.append(item);
    for (QQuickItem *child : item->childItems())
        stops += stopsIn(child);
    return stops;
}

bool isWithin(QQuickItem *item, const QQuickItem *screen)
{
    return !screen || item == screen || screen->isAncestorOf(item);
}

} // namespace

FocusKeeper *FocusKeeper::of(const QQuickWindow &window)
{
    return window.findChild<FocusKeeper *>();
}

void FocusKeeper::setScreen(QQuickItem *screen)
{
    if (screen == screen_)
        return;
    screen_ = screen;
    Q_EMIT screenChanged();
    settleSoon();
}

FocusKeeper::Kind FocusKeeper::kind()
{
    settle();
    const QQuickItem *item = window() ? window()->activeFocusItem() : nullptr;
    if (!holdsFocus(item))
        return Kind::Nothing;
    if (isButton(*item))
        return item->property("checkable").toBool() ? Kind::Choice : Kind::Button;
    if (item->inherits("QQuickTextInput"))
        return item->property("text").toString().isEmpty() ? Kind::EmptyField : Kind::FilledField;
    return Kind::Reading;
}

void FocusKeeper::leave()
{
    hold(nullptr);
    if (QQuickItem *item = window()->activeFocusItem())
        item->setFocus(false);
    parentItem()->forceActiveFocus();
}

void FocusKeeper::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemSceneChange && value.window) {
        connect(value.window, &QQuickWindow::activeFocusItemChanged, this, &FocusKeeper::follow,
            Qt::UniqueConnection);
        follow();
    }
    QQuickItem::itemChange(change, value);
}

void FocusKeeper::follow()
{
    QQuickItem *item = window() ? window()->activeFocusItem() : nullptr;
    if (holdsFocus(item))
        hold(item);
    else
        settleSoon();
}

void FocusKeeper::hold(QQuickItem *control)
{
    if (control && heldScreen_ && heldScreen_ != screen_)
        openers_[heldScreen_] = held_;
    held_ = control;
    holding_ = control != nullptr;
    if (!control)
        return;
    heldScreen_ = isWithin(control, screen_) ? screen_.data() : nullptr;
    lookAround();
    for (const auto changed : {&QQuickItem::visibleChanged, &QQuickItem::enabledChanged})
        connect(control, changed, this, &FocusKeeper::settleSoon, Qt::UniqueConnection);
}

void FocusKeeper::lookAround()
{
    stops_ = stopsIn(window()->contentItem());
    place_ = stops_.indexOf(held_);
}

/// Once all that changes together has changed.
void FocusKeeper::settleSoon()
{
    QMetaObject::invokeMethod(this, &FocusKeeper::settle, Qt::QueuedConnection);
}

void FocusKeeper::settle()
{
    const QQuickItem *now = window() ? window()->activeFocusItem() : nullptr;
    if (!now) // a window without the focus settles when it gets it back
        return;
    if (holding_ && !canBeUsed(held_)) {
        if (QQuickItem *next = successor())
            return next->forceActiveFocus(Qt::OtherFocusReason);
        hold(nullptr);
    } else if (now != held_) {
        hold(nullptr); // it was taken elsewhere on purpose
    }
    if (now->isAncestorOf(parentItem()))
        parentItem()->forceActiveFocus();
}

QQuickItem *FocusKeeper::successor()
{
    const bool screenLeft = heldScreen_ && screen_ && heldScreen_ != screen_;
    if (screenLeft) {
        if (QQuickItem *opener = openers_.value(screen_); canBeUsed(opener))
            return opener;
    }
    if (screenLeft || (held_ && held_->window()))
        lookAround();
    const QQuickItem *within = screenLeft ? screen_ : heldScreen_;
    const auto fits = [within](
                          QQuickItem *item) { return canBeUsed(item) && isWithin(item, within); };
    for (qsizetype i = screenLeft ? 0 : place_ + 1; i < stops_.size(); ++i) {
        if (fits(stops_[i]))
            return stops_[i];
    }
    for (qsizetype i = place_ - 1; i >= 0; --i) {
        if (fits(stops_[i]))
            return stops_[i];
    }
    return nullptr;
}

} // namespace kelo
