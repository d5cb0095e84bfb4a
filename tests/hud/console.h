#pragma once

#include "support/link_fixture.h"
#include "voice/voice_control.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>

namespace kelo::test {

/// The display in a window of its own, over a link of its own. The drawings of other rooms are
/// plain rectangles named after their places, a screen among them is written out in QML.
class Console {
public:
    QByteArray welcomeScreen = "FocusScope { objectName: 'welcomeScreen' }";
    QByteArray import; ///< what that needs
    QObject *questions = nullptr; ///< "room.questions" in it

    /// Shows it; only with `furnished` are there any drawings.
    void show(QSize size, bool furnished = true);
    void resize(QSize size);

    /// Follows a script, a step a line, and says where it went wrong, or nothing.
    ///
    ///     @mode idle       the engine says so
    ///     state OFFLINE    the link is brought there
    ///     > Name           Tab until what is called so has the focus
    ///     Space            that key; Shift+Tab
    ///     press Name       a screen reader presses it; focus Name: gives it the focus
    ///     leave            the focus leaves the controls
    ///     = Name           what has the focus in the end begins so, or nothing has it
    ///     sent TEXT        the engine has got that last
    [[nodiscard]] QString follow(const QString &script);

    /// Every visible item of the display, in the order of the tree.
    [[nodiscard]] QList<QQuickItem *> visibleItems() const;
    /// The same of its texts, each with its place and size.
    [[nodiscard]] QStringList texts() const;
    /// The part of `item` that its scrolling ancestors let through, in window coordinates.
    [[nodiscard]] static QRectF shown(const QQuickItem *item);
    /// What is wrong with how it looks and where all of it stands once everything has come to rest;
    /// see unlikeKept and itemsIn.
    [[nodiscard]] QString unlike(const QString &sheet, int number = 0);
    /// Where items are other than those that were kept.
    [[nodiscard]] static QString standsUnlike(const QStringList &items, const QString &kept);
    /// Where its larger parts stand otherwise than at the size of that name.
    [[nodiscard]] QString standsUnlikeAt(const QString &size) const;
    /// What is called so as it is while the mouse is over it, and while it is held.
    [[nodiscard]] QStringList touched(const QStringList &names);

    /// What a screen reader reads otherwise than in a text that was kept, where everything in the
    /// tree has a line: role, name, state and, after "//", the description where it is another than
    /// in the line above. Or else, that Tab does not go round through the same in the same order.
    [[nodiscard]] QString readsUnlike(const QString &kept);

    /// Everything that a screen reader finds in the window, in its order.
    [[nodiscard]] QList<QAccessibleInterface *> tree();
    /// The first of them that is called so; null when there is none.
    [[nodiscard]] QAccessibleInterface *find(const QString &name);
    /// The name of what has the keyboard focus.
    [[nodiscard]] QString focused() const;

    LinkFixture link;
    VoiceControl voice;
    QQuickView view;

private:
    [[nodiscard]] bool take(const QString &step);

    std::unique_ptr<QObject> room_;
};

} // namespace kelo::test
