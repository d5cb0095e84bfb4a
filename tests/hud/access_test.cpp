#include "console.h"
#include "hud/theme.h"
#include "support/table.h"

#include <QAccessible>
#include <QMimeData>
#include <QTest>
#include <QtGui/private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Table;

using test::Console;

/// What the display offers to hands, to the keyboard and to screen readers.
class AccessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // As while a screen reader runs: that is when Qt's own controls enter the tree.
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
        QVERIFY(QAccessible::isActive());
    }

    void tellsAScreenReader()
    {
        Console console;
        console.link.say({"kbd Stage Piano 88", "say First.", "heard second", "mode jazz",
            "jazz Swing feel", "update 2.4.0|Notes."});
        console.link->engineIs(EngineState::Offline);
        console.voice.level = 0.424;
        console.show({1240, 840});

        QMap<QAccessible::Role, QStringList> names;
        for (QAccessibleInterface *each : all(console))
            names[each->role()] << each->text(QAccessible::Name);
        QCOMPARE(names[QAccessible::Heading],
            (QStringList{u"NEW UPDATE  //  VERSION 2.4.0"_s, u"Kelo"_s, u"SYSTEMS"_s,
                u"CONVERSATION"_s, u"COMMANDS"_s, u"ASSISTANT"_s, u"PLAY"_s, u"MODES"_s, u"SOUND"_s,
                u"ACCESS"_s, u"SYSTEM"_s, u"JAZZ LESSONS"_s, u"KEYBOARD  //  88 KEYS"_s}));
        QCOMPARE(names[QAccessible::ListItem],
            (QStringList{u"12:00:00  First."_s, u"12:00:00  ▸ YOU: second"_s}));
        const char *const legend =
            "Piano buttons: 1 JAM AGAIN, 2 THE IDEA, 3 NEXT LESSON, 4 PREVIOUS, 5 TALK MODE, "
            "6 STOP BAND, 7 COMPOSE, 8 HELP, H HOME, K KEEP";
        for (const char *text : {"Kelo is OFFLINE", "MODE: JAZZ", "PIANO: Stage Piano 88",
                 "ENGINE: OFFLINE", "HANDS: both", "Notes.", legend})
            QVERIFY2(names[QAccessible::Paragraph].contains(QString::fromUtf8(text)), text);

        QAccessibleInterface *command = find(console, QAccessible::Button, u"Surprise me"_s);
        QVERIFY(command);
        QCOMPARE(command->text(QAccessible::Description), u"Key: ?!"_s);
        QVERIFY(command->state().focusable);

        QAccessibleInterface *meter =
            find(console, QAccessible::ProgressBar, u"Microphone level 42 percent"_s);
        QVERIFY(meter && meter->valueInterface());
        QCOMPARE(meter->valueInterface()->currentValue().toDouble(), 42.0);
        QCOMPARE(meter->valueInterface()->maximumValue().toDouble(), 100.0);
        QCOMPARE(meter->text(QAccessible::Value), u"Microphone level 42 percent"_s);

        console.voice.on = true;
        QVERIFY(find(console, QAccessible::CheckBox,
            u"Voice control is on. Say Kelo, then what you want"_s));
    }

    void commandsGoToTheEngine_data()
    {
        const Table<int> row{"way"};
        row("Return", Qt::Key_Return);
        row("Enter", Qt::Key_Enter);
        row("Space", Qt::Key_Space);
        row("screen reader", 0);
        row("mouse", -1);
    }

    void commandsGoToTheEngine()
    {
        QFETCH(int, way);
        Console console;
        console.link.start("line @jazz Swing feel|Blues in F\nserve\n");
        console.show({2560, 1440});
        QTRY_COMPARE(console.link->jazz.get().size(), 2);

        const QString name = u"Blues in F"_s;
        QQuickItem *before = console.view.activeFocusItem();
        if (way > 0) {
            QVERIFY(console.tabTo(name));
            QTest::keyClick(&console.view, static_cast<Qt::Key>(way));
        } else {
            QAccessibleInterface *button = find(console, QAccessible::Button, name);
            QVERIFY(button);
            if (way == 0) {
                button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            } else {
                const auto *item = qobject_cast<QQuickItem *>(button->object());
                QTest::mouseClick(
                    &console.view, Qt::LeftButton, {}, Console::shown(item).center().toPoint());
            }
            QCOMPARE(console.view.activeFocusItem(), before);
        }
        QTRY_COMPARE(console.link.engine.input(), "~jazz 2\n");
        console.link->stop();
    }

    void focusSurvivesAChangeOfMode()
    {
        Console console;
        console.show({900, 600});
        QVERIFY(console.tabTo(u"Start the lesson, or hear the part again"_s));
        QQuickItem *space = console.view.activeFocusItem();

        console.link.say({"mode compose"});
        QCOMPARE(console.view.activeFocusItem(), space);
        QCOMPARE(Console::accessibleName(space), u"Play it back as a band"_s);

        // One that leaves hands it on to the next that stays.
        QTest::keyClick(&console.view, Qt::Key_Backtab);
        QCOMPARE(Console::accessibleName(console.view.activeFocusItem()),
            u"Start over, without saving"_s);
        console.link.say({"mode idle"});
        QTRY_COMPARE(console.view.activeFocusItem(), space);

        // A screen that covers the console gives the focus back.
        console.link->showVisualiser();
        console.link->showVisualiser(false);
        QCOMPARE(console.view.activeFocusItem(), space);
    }

    void readsBackTheLog()
    {
        Console console;
        for (int i = 1; i <= 50; ++i)
            console.link->handle("say line " + QByteArray::number(i));
        console.show({900, 600});
        QVERIFY(console.tabTo(u"12:00:00  line 50"_s));
        const auto read = [&console](Qt::Key key) {
            QTest::keyClick(&console.view, key);
            const QQuickItem *line = console.view.activeFocusItem();
            return Console::shown(line).size() == line->size()
                ? Console::accessibleName(console.view.activeFocusItem())
                : u"not in view"_s;
        };
        QCOMPARE(read(Qt::Key_Up), u"12:00:00  line 49"_s);
        QCOMPARE(read(Qt::Key_Home), u"12:00:00  line 1"_s);
        QCOMPARE(read(Qt::Key_Up), u"12:00:00  line 1"_s);
        const QString aPageOn = read(Qt::Key_PageDown);
        QVERIFY2(aPageOn.section(u' ', -1).toInt() > 2, qPrintable(aPageOn));
        QCOMPARE(read(Qt::Key_PageUp), u"12:00:00  line 1"_s);
        QCOMPARE(read(Qt::Key_Down), u"12:00:00  line 2"_s);
        QCOMPARE(read(Qt::Key_End), u"12:00:00  line 50"_s);
        QCOMPARE(read(Qt::Key_Down), u"12:00:00  line 50"_s);
    }

    void showsOneScreenAtATime()
    {
        Console console;
        console.show({1240, 840}, true);
        const auto shows = [&console](const char *place) {
            for (QQuickItem *item : console.visibleItems()) {
                if (item->objectName() == QLatin1String(place))
                    return true;
            }
            return false;
        };
        QVERIFY(shows("core") && shows("caption") && shows("keyStrip"));
        console.link->showVisualiser();
        QTRY_VERIFY(shows("visualiserScreen") && !shows("core"));
        console.link->askWelcome();
        QTRY_VERIFY(shows("welcomeScreen") && !shows("visualiserScreen") && !shows("core"));
        console.link->finishWelcome(u"Kelo"_s, {});
        console.link->showVisualiser(false);
        QTRY_VERIFY(shows("core") && !shows("welcomeScreen") && !shows("visualiserScreen"));
    }

    void playsADroppedFile()
    {
        Console console;
        console.link.start("serve\n");
        console.show({1240, 840});
        const auto drop = [&console](const QUrl &url) {
            QMimeData mime;
            mime.setUrls({url});
            const QPoint at(600, 400);
            QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
            QCoreApplication::sendEvent(&console.view, &enter);
            QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
            QCoreApplication::sendEvent(&console.view, &dropped);
        };
        drop(QUrl(u"https://example.org/a.mid"_s));
        QVERIFY(!console.link->visual);
        drop(QUrl::fromLocalFile(u"/tmp/a piece (1).mid"_s));
        QVERIFY(console.link->visual);
        QTRY_COMPARE(console.link.engine.input(), "~play /tmp/a piece (1).mid\n");
        console.link->stop();
    }

private:
    /// Everything that a screen reader finds in the window.
    static QList<QAccessibleInterface *> all(Console &console)
    {
        QList<QAccessibleInterface *> found;
        const std::function<void(QAccessibleInterface *)> collect =
            [&](QAccessibleInterface *from) {
                for (int i = 0; i < from->childCount(); ++i) {
                    QAccessibleInterface *child = from->child(i);
                    if (child && !child->state().invisible) {
                        found.append(child);
                        collect(child);
                    }
                }
            };
        collect(QAccessible::queryAccessibleInterface(&console.view));
        return found;
    }

    static QAccessibleInterface *find(Console &console, QAccessible::Role role, const QString &name)
    {
        for (QAccessibleInterface *each : all(console)) {
            if (each->role() == role && each->text(QAccessible::Name) == name)
                return each;
        }
        return nullptr;
    }
};

} // namespace kelo

QTEST_MAIN(kelo::AccessTest)
#include "access_test.moc"
