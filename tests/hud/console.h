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

    /// Every visible item of the display, in the order of the tree.
    [[nodiscard]] QList<QQuickItem *> visibleItems() const;

    /// The part of `item` that its scrolling ancestors let through, in window coordinates.
    [[nodiscard]] static QRectF shown(const QQuickItem *item);

    /// Presses Tab until the control with that accessible name has the focus; fails after a round.
    [[nodiscard]] bool tabTo(const QString &name);

    static QString accessibleName(QQuickItem *item);

    LinkFixture link;
    VoiceControl voice;
    QQuickView view;

private:
    std::unique_ptr<QObject> furniture_;
};

} // namespace kelo::test
