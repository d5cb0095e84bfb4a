#include "console.h"
#include "hud/focus_keeper.h"
#include "hud/theme.h"
#include "support/table.h"

#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QtGui/private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Console;
using test::Table;
using Kind = FocusKeeper::Kind;

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

    /// Everything in the tree, in its order: the display as a screen reader reads it.
    void tellsAScreenReader_data()
    {
        const Table<QByteArrayList, QString, QString> row{"lines", "state", "tree"};
        const QString banner =
            u"NEW UPDATE  //  VERSION 2.4.0*|NEW UPDATE  //  VERSION 2.4.0|Notes.|"
            "Update now to version 2.4.0|Update later|"_s;
        const QString lists =
            u"ASSISTANT|Play me something it makes up (Key: ♪)|"
            "Play my album: every piece I saved (Key: ALBUM)|Jam: I play, it answers (Key: JAM)|"
            "My piece as a lullaby (Key: LULL)|My piece as a video game (Key: 8BIT)|"
            "My piece as a film score (Key: EPIC)|Surprise me (Key: ?!)|PLAY|"
            "@Start the lesson, or hear the part again (Key: SPACE)|Say the notes of the part "
            "(Key: N)|"
            "Skip ahead (Key: →)|Go back (Key: ←)|Pause, and carry on (Key: RETURN)|"
            "Keep what you just played (Key: S)|Home: leave any mode (Key: 0)|Spoken help (Key: H)|"
            "MODES|New composition (Key: C)|Live band: it follows you as you play (Key: B)|"
            "Band style: simple or full (Key: STYLE)|Talk mode on or off (Key: T)|"
            "Jazz course (Key: J)|Song menu (Key: M)|List the songs (Key: L)|Logic control (Key: "
            "G)|"
            "REAPER control (Key: R)|SOUND|Slower demo (Key: −)|Faster demo (Key: =)|"
            "Band quieter (Key: [)|Band louder (Key: ])|Voice quieter (Key: ,)|Voice louder (Key: "
            ".)|"
            "Change the voice (Key: V)|Also play through the piano (Key: P)|ACCESS|"
            "Voice control: say Kelo, then what you want (Key: MIC, off)|"
            "Type to Kelo: a command or a question (Key: A)|Large captions, on or off (Key: BIG, "
            "on)|"
            "High contrast, on or off (Key: HC, off)|"
            "Lessons for both hands, right only or left only (Key: HAND)|"
            "Ear training: find the note I play (Key: EAR)|"
            "Metronome on (say a speed by voice) (Key: TICK)|SYSTEM|"
            "Open the large-print command page (Key: /)|Set the top key again (Key: ⇧K)|"_s;
        const QString voice =
            u"EARS: OFF|Microphone level 42 percent|Voice control is off "
            "(Voice control. When it is on, say Kelo, then what you want., off)|"_s;
        const QString header =
            u"Kelo|MUSIC ASSISTANT  //  V3|Kelo is %1|PLAY A MIDI FILE  [ O ] (Choose "
            "a MIDI file and watch its notes fall onto the keys)|VISUALISER  [ F ] (Open the "
            "visualiser: your playing as rising light)|"_s;
        const QString hint = u"PRESS A AND TYPE  “Kelo, play me something”|"_s;
        const QString legend = u"KEYBOARD  //  88 KEYS*|KEYBOARD  //  88 KEYS|Piano buttons: %1, "
                               "8 HELP, H HOME, K KEEP"_s;
        row("a jazz lesson without an engine",
            {"kbd Stage Piano 88", "say First.", "heard second", "mode jazz",
                "jazz Swing feel|Blues", "update 2.4.0|Notes.", "hands right", "bandlevel medium",
                "daw 1"},
            u"OFFLINE"_s,
            banner + header.arg(u"OFFLINE"_s) + hint
                + u"SYSTEMS*|SYSTEMS|MODE: JAZZ|PIANO: Stage Piano 88|VOICE: OFF|BAND: full, "
                  u"medium|"
                  "HANDS: right ONLY|ENGINE: OFFLINE|LOGIC / REAPER: LINKED|RESTART ENGINE|"_s
                + voice
                + u"CONVERSATION*|CONVERSATION|Mode: JAZZ|Voice log: everything Kelo has said|"
                  "12:00:00  First.|12:00:00  ▸ YOU: second|COMMANDS*|COMMANDS|"_s
                + QString(lists).remove(u'@')
                + u"JAZZ LESSONS|Swing feel (Key: 1)|Blues (Key: 2)|"_s
                + legend.arg(u"1 JAM AGAIN, 2 THE IDEA, 3 NEXT LESSON, 4 PREVIOUS, 5 TALK MODE, "
                             "6 STOP BAND, 7 COMPOSE"_s));
        row("a lesson", {"mode teach"}, u"ONLINE"_s,
            header.arg(u"ONLINE"_s) + hint
                + u"SYSTEMS*|SYSTEMS|MODE: LESSON|PIANO: NOT FOUND|VOICE: OFF|BAND: full|HANDS: "
                  u"both|"
                  "LOGIC / REAPER: NOT OPEN|"_s
                + voice
                + u"CONVERSATION*|CONVERSATION|Mode: LESSON|"
                  "Voice log: everything Kelo has said|COMMANDS*|COMMANDS|"_s
                + QString(lists).replace(u"@"_s, u"Stop learning this song for good (Key: STOP)|"_s)
                + legend.arg(u"1 START / HEAR AGAIN, 2 SAY THE NOTES, 3 SKIP AHEAD, 4 GO BACK, "
                             "5 TALK MODE, 6 PAUSE, 7 COMPOSE"_s));
        row("the visualiser", {"window visual 1"}, u"ONLINE"_s,
            u"PLAY A MIDI FILE  [ O ] (Choose a MIDI file and watch its notes fall onto the keys)|"
            "BACK  [ F ] (Leave the visualiser)|EARS: OFF|Microphone level 42 percent"_s);
        row("the visualiser with a roll", {"rollnew Waltz"}, u"ONLINE"_s,
            u"STOP  [ RETURN ] (Stop the MIDI file)|BACK  [ F ] (Leave the visualiser)|EARS: OFF|"
            "Microphone level 42 percent"_s);
    }

    void tellsAScreenReader()
    {
        QFETCH(const QByteArrayList, lines);
        QFETCH(const QString, state);
        Console console;
        console.link->setAccess(u"large"_s, true);
        console.voice.level = 0.424;
        console.show({1240, 840});
        for (const QByteArray &line : lines)
            console.link->handle(line);
        console.link.bring(state);
        QFETCH(const QString, tree);
        const auto begun = [&] { return console.tree().constFirst()->text(QAccessible::Name); };
        QTRY_VERIFY(tree.startsWith(begun())); // one screen fades out while the next comes in

        QStringList told;
        QStringList stops;
        for (QAccessibleInterface *each : console.tree()) {
            const QString name = each->text(QAccessible::Name);
            const QAccessible::State now = each->state();
            QStringList more{each->text(QAccessible::Description)};
            if (now.checkable)
                more << (now.checked ? u"on"_s : u"off"_s);
            more.removeAll(u""_s);
            told << name + (each->role() == QAccessible::Grouping ? u"*"_s : u""_s)
                    + (more.isEmpty() ? u""_s : u" (%1)"_s.arg(more.join(u", "_s)));
            QVERIFY2(!now.invisible, qPrintable(name));
            if (now.focusable)
                stops << name;
        }
        QCOMPARE(told.join(u'|'), tree);

        // The keyboard reaches the same in the same order.
        QStringList reached;
        for (const QString &stop : stops) {
            Q_UNUSED(stop)
            QTest::keyClick(&console.view, Qt::Key_Tab);
            reached << console.focused();
        }
        QCOMPARE(reached, stops);
        QTest::keyClick(&console.view, Qt::Key_Tab);
        QCOMPARE(console.focused(), stops.constFirst());
    }

    void theMeterHasAValue()
    {
        Console console;
        console.voice.level = 1.7;
        console.show({1240, 840});
        QAccessibleInterface *meter = console.find(u"Microphone level 100 percent"_s);
        QVERIFY(meter && meter->role() == QAccessible::ProgressBar);
        QVERIFY(meter->parent() && meter->parent()->indexOfChild(meter) >= 0);
        QVERIFY(console.find(u"EARS"_s)->rect().adjusted(0, 0, 0, 20).contains(meter->rect()));
        QAccessibleValueInterface *value = meter->valueInterface();
        QVERIFY(value && value->currentValue() == 100 && value->maximumValue() == 100
            && value->minimumValue() == 0);
    }

    void keepsTheFocusOnWhatCanBeUsed_data()
    {
        const Table<QString> row{"script"};
        row("a change of mode takes it from nobody who stays", uR"(> Start the lesson
            @mode compose
            = Play it back as a band
            Shift+Tab
            = Start over, without saving
            @mode idle
            = Start the lesson)"_s);
        row("a button that did its work", uR"(state OFFLINE
            > RESTART ENGINE
            state STARTING
            = Voice control is off)"_s);
        row("one at the end", uR"(@jazz Swing feel|Blues
            > Blues
            @jazz Swing feel|Blues
            = Blues
            @jazz
            = Set the top key again)"_s);
        row("the banner", uR"(@update 2|Notes.
            > Update later
            @update
            = PLAY A MIDI FILE)"_s);
        row("to another screen and back", uR"(> VISUALISER
            Space
            = PLAY A MIDI FILE  [ O ]
            @rollnew Waltz
            = STOP  [ RETURN ]
            Tab
            = BACK
            Return
            = VISUALISER)"_s);
        row("nobody had it, nobody gets it", uR"(@window visual 1
            =
            @window visual 0
            =)"_s);
        row("left on one screen it stays left", uR"(> VISUALISER
            Space
            = PLAY
            leave
            =
            @window visual 0
            =
            Tab
            = PLAY)"_s);
        row("the questions give it back", uR"(> Jazz course
            @welcome
            =
            @window visual 0)"_s);
        row("as a screen reader sets it", uR"(focus Surprise me
            = Surprise me
            Space
            sent ~say surprise me)"_s);
        row("a screen reader leaves it where it is", uR"(> Surprise me
            press Go back
            = Surprise me)"_s);
        row("keypad", uR"(> Home: leave any mode
            Enter
            sent 0)"_s);
        row("a line that goes while it is read", uR"(@say one
            @say two
            > 12:00:00  two
            Up
            = 12:00:00  one
            @say three
            = 12:00:00  one
            leave
            > 12:00:00  three)"_s);
    }

    void keepsTheFocusOnWhatCanBeUsed()
    {
        QFETCH(const QString, script);
        Console console;
        console.link.start("serve");
        console.show({900, 600});
        const QString wrong = console.follow(script);
        console.link->stop();
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
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
