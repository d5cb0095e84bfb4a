#include "console.h"
#include "hud/focus_keeper.h"
#include "hud/theme.h"
#include "support/table.h"

#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Console;
using test::scriptRows;
using test::Table;
using Kind = FocusKeeper::Kind;

/// What the display offers to hands, to the keyboard and to screen readers.
class AccessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsAsItDid_data()
    {
        const Table<QByteArrayList, QString, QString> row{"lines", "state", "begins"};
        row("jazz-lesson",
            {"kbd Stage Piano 88", "say First.", "heard second", "mode jazz",
                "jazz Swing feel|Blues", "update 2.4.0|Notes.", "hands right", "bandlevel medium",
                "daw 1"},
            u"OFFLINE"_s, u"NEW UPDATE"_s);
        row("lesson", {"mode teach"}, u"ONLINE"_s, u"Kelo"_s);
        row("more-than-there-is-room-for",
            {"name " + QByteArray("Name").repeated(15), "kbd " + QByteArray("Piano ").repeated(40),
                "update " + QByteArray("2.4").repeated(20) + '|'
                    + QByteArray("Notes. ").repeated(600)},
            u"ONLINE"_s, u"NEW UPDATE"_s);
        row("composing", {"mode compose"}, u"ONLINE"_s, u"Kelo"_s);
        row("visualiser", {"window visual 1"}, u"ONLINE"_s, u"PLAY"_s);
        row("visualiser-roll", {"rollnew Waltz"}, u"ONLINE"_s, u"STOP"_s);
    }

    void readsAsItDid()
    {
        QFETCH(const QByteArrayList, lines);
        QFETCH(const QString, state);
        QFETCH(const QString, begins);
        Console console;
        console.link->setAccess(u"large"_s, true);
        console.voice.showLevel(0.424);
        console.show({1240, 840});
        for (const QByteArray &line : lines)
            console.link->handle(line);
        console.link.bring(state);
        const auto begun = [&] { return console.tree().constFirst()->text(QAccessible::Name); };
        QTRY_VERIFY(begun().startsWith(begins)); // one screen fades out while the next comes in
        QCOMPARE(console.readsUnlike(QString::fromLatin1(QTest::currentDataTag())), u""_s);
    }

    void theMeterHasAValue()
    {
        Console console;
        console.voice.showLevel(1.7);
        console.show({1240, 840});
        QAccessibleInterface *meter = console.find(u"Microphone level 100 percent"_s);
        QVERIFY(meter && meter->role() == QAccessible::ProgressBar);
        QVERIFY(meter->parent() && meter->parent()->indexOfChild(meter) >= 0);
        QVERIFY(console.find(u"EARS"_s)->rect().adjusted(0, 0, 0, 20).contains(meter->rect()));
        QAccessibleValueInterface *value = meter->valueInterface();
        QVERIFY(value && value->currentValue() == 100 && value->maximumValue() == 100
            && value->minimumValue() == 0);
    }

    void keepsTheFocusOnWhatCanBeUsed_data() { scriptRows(QStringLiteral(KELO_FOCUS)); }

    void keepsTheFocusOnWhatCanBeUsed()
    {
        QFETCH(const QString, script);
        Console console;
        console.link.start("serve");
        console.show({900, 600});
        QCOMPARE(console.follow(script), u""_s);
        console.link->stop();
    }

    void knowsWhatTheFocusIsOn()
    {
        Console console;
        console.show({900, 600});
        console.link.say({"say First."});
        const auto kindAt = [&](const QString &name) {
            return console.follow(u"> "_s + name).isEmpty() ? FocusKeeper::of(console.view)->kind()
                                                            : Kind::EmptyField;
        };
        QCOMPARE(FocusKeeper::of(console.view)->kind(), Kind::Nothing);
        QCOMPARE(kindAt(u"PLAY A MIDI"_s), Kind::Button);
        QCOMPARE(kindAt(u"Voice control is off"_s), Kind::Choice);
        QCOMPARE(kindAt(u"12:00:00  First."_s), Kind::Reading);
        console.link.say({"window visual 1"});
        QCOMPARE(FocusKeeper::of(console.view)->kind(), Kind::Button); // at once
    }

    void goesFromLineToLine()
    {
        Console console;
        for (int i = 1; i <= 60; ++i)
            console.link->handle("say line " + QByteArray::number(i));
        console.show({900, 600});
        QVERIFY(console.follow(u"> 12:00:00  line 60"_s).isEmpty());
        const auto read = [&console](Qt::Key key) {
            QTest::keyClick(&console.view, key);
            const QQuickItem *line = console.view.activeFocusItem();
            const bool inView = Console::shown(line).size() == line->size();
            return inView ? console.focused().section(u' ', -1).toInt() : 0;
        };
        QCOMPARE(read(Qt::Key_Up), 59);
        QCOMPARE(read(Qt::Key_Home), 1);
        QCOMPARE(read(Qt::Key_Up), 1);
        const int aPageOn = read(Qt::Key_PageDown);
        QVERIFY(aPageOn > 2 && aPageOn < 10);
        QCOMPARE(read(Qt::Key_PageDown), 2 * aPageOn - 1);
        QCOMPARE(read(Qt::Key_PageUp), aPageOn);
        QCOMPARE(read(Qt::Key_PageUp), 1);
        QCOMPARE(read(Qt::Key_Down), 2);
        QCOMPARE(read(Qt::Key_End), 60);
        QCOMPARE(read(Qt::Key_Down), 60);
        read(Qt::Key_Home);
        const QQuickItem *log =
            console.view.activeFocusItem()->parentItem()->parentItem()->parentItem();
        console.link.say({"say line 61"}); // the oldest leaves, the newest shows
        QTRY_COMPARE(console.focused(), u"12:00:00  line 2"_s);
        QTRY_COMPARE(log->property("contentY").toDouble(),
            log->property("contentHeight").toDouble() - log->height());
    }

    void unusedKeysScroll()
    {
        Console console;
        console.link.say({"update 2|" + QByteArray("Better lessons. ").repeated(90)});
        console.show({496, 336});
        QVERIFY(console.follow(u"> Better lessons."_s).isEmpty());
        const auto place = [&](const QQuickItem *item) {
            while (!item->inherits("QQuickFlickable"))
                item = item->parentItem();
            return item->property("contentY").toDouble();
        };
        const QQuickItem *notes = console.view.activeFocusItem();
        QTest::keyClick(&console.view, Qt::Key_Down);
        QCOMPARE(place(notes), 40.0);
        QTest::keyClick(&console.view, Qt::Key_End);
        const double end = place(notes);
        QVERIFY(end > 100);
        QTest::keyClick(&console.view, Qt::Key_PageUp);
        QVERIFY(place(notes) < end && place(notes) > end - 100);

        QVERIFY(console.follow(u"leave"_s).isEmpty());
        const auto *legend = qobject_cast<QQuickItem *>(console.find(u"Piano buttons"_s)->object());
        QVERIFY(Console::shown(legend).isEmpty());
        QTest::keyClick(&console.view, Qt::Key_Down);
        QCOMPARE(place(legend), 40.0);
        QTest::keyClick(&console.view, Qt::Key_PageDown);
        QTest::keyClick(&console.view, Qt::Key_Up);
        QVERIFY(place(legend) > 40);
        QTest::keyClick(&console.view, Qt::Key_End);
        QCOMPARE(Console::shown(legend).size(), legend->size());
        QTest::keyClick(&console.view, Qt::Key_Home);
        QCOMPARE(place(legend), 0.0);
    }

    void pressesAndDrops()
    {
        Console console;
        console.link.start("serve");
        console.link.say({"jazz Swing feel|Blues in F"});
        console.show({2560, 1440});
        const auto *blues = qobject_cast<QQuickItem *>(console.find(u"Blues in F"_s)->object());
        QTest::mouseClick(
            &console.view, Qt::LeftButton, {}, Console::shown(blues).center().toPoint());
        QCOMPARE(console.focused(), u""_s);
        QVERIFY(console.follow(u"sent ~jazz 2"_s).isEmpty());
        for (const char *step : {"press Voice control is off",
                 "press Voice control is on. Say Kelo", "press Voice control is off"})
            QCOMPARE(console.follow(QString::fromLatin1(step)), u""_s);
        QVERIFY(console.voice.on && console.find(u"Voice control is on"_s)->state().checked);
        console.voice.stop();

        QTest::keyClick(&console.view, Qt::Key_Tab);
        QTest::keyClick(&console.view, Qt::Key_Return);
        QCOMPARE(console.link.shell.calls.filter(u"choose"_s).size(), 1);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, u"\r"_s, true);
        QCoreApplication::sendEvent(&console.view, &held);
        QCOMPARE(console.link.shell.calls.filter(u"choose"_s).size(), 1);

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
        QVERIFY(console.follow(u"sent ~play /tmp/a piece (1).mid"_s).isEmpty());
        console.link->stop();
    }
};

} // namespace kelo

QTEST_MAIN(kelo::AccessTest)
#include "access_test.moc"
