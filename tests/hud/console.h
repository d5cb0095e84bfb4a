#pragma once

#include "support/link_fixture.h"
#include "voice/voice_control.h"

#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>

namespace kelo::test {

/// The display in a window of its own, over a link of its own.
class Console {
public:
    /// Shows it. With `furnished` every place for the drawings of other rooms holds a plain
    /// rectangle, named after its place.
    void show(QSize size, bool furnished = false);

    /// Every item below the display that `wanted` holds for, in the order of the tree.
    template <typename Item = QQuickItem> [[nodiscard]] QList<Item *> visibleItems()
    {
        QList<Item *> found;
        collect(view.rootObject(), [&found](QQuickItem *item) {
            if (auto *typed = qobject_cast<Item *>(item))
                found.append(typed);
        });
        return found;
    }

    /// The part of `item` that its scrolling ancestors let through, in window coordinates.
    [[nodiscard]] static QRectF shown(const QQuickItem *item);

    /// Presses Tab until the focus comes back to where it was after the first, and returns what
    /// had it meanwhile.
    QList<QQuickItem *> tabRound();
    /// Presses Tab until the control with that accessible name has the focus; fails after a round.
    [[nodiscard]] bool tabTo(const QString &name);

    static QString accessibleName(QQuickItem *item);

    LinkFixture link;
    VoiceControl voice;
    QQuickView view;

private:
    static void collect(QQuickItem *item, const std::function<void(QQuickItem *)> &visit);

    std::unique_ptr<QObject> furniture_;
};

} // namespace kelo::test
