#include "console.h"
#include "hud/command_table.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Console;

/// At every size and in every state: nothing overlaps, nothing is cut off, and the keyboard
/// reaches everything in reading order and sees where it is.
class LayoutTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void holds_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("furnished");
        QTest::addColumn<QByteArrayList>("lines");

        const QByteArrayList plain{"kbd Stage Piano 88", "say Good evening.",
            "heard play me something",
            "say Here is a slow waltz in D minor that I have just made up, for the left hand "
            "alone."};
        const QByteArrayList crowded = plain
            + QByteArrayList{"name Philadelphia|Ann", "mode reaper", "hands right",
                "bandlevel medium",
                "jazz Swing feel|Walking bass lines for the left hand alone, slowly|Blues",
                "update 2.4.0|" + QByteArray("Better lessons for the left hand. ").repeated(30)};
        for (const QSize size : {QSize(496, 336), QSize(620, 420), QSize(900, 600),
                 QSize(1240, 840), QSize(2560, 1440), QSize(3840, 2160)}) {
            const auto row = [size](const char *name) -> QTestData & {
                return QTest::addRow("%s at %d", name, size.width());
            };
            row("idle") << size << false << plain;
            row("idle, furnished") << size << true << plain;
            row("compose") << size << true << (plain + QByteArrayList{"mode compose"});
            row("teach") << size << false << (plain + QByteArrayList{"mode teach", "daw 1"});
            row("crowded") << size << false << crowded;
            row("crowded, furnished") << size << true << crowded;
        }
    }

    void holds()
    {
        Console console;
        prepare(console);
        if (QTest::currentTestFailed())
            return;

        const QRectF window(QPointF(), console.view.size());
        QList<QQuickItem *> texts;
        for (QQuickItem *item : console.visibleItems()) {
            if (isText(item) && !isText(item->parentItem())
                && !item->property("text").toString().isEmpty())
                texts.append(item);
        }
        QVERIFY(texts.size() > 60);
        for (QQuickItem *text : texts) {
            const QByteArray name = text->property("text").toByteArray();
            const QRectF all = text->mapRectToScene(text->boundingRect());
            const QRectF seen = Console::shown(text);
            QVERIFY2(!text->property("truncated").toBool(), name);
            QVERIFY2(text->property("contentWidth").toDouble() <= text->width() + 0.5, name);
            QVERIFY2(text->property("contentHeight").toDouble() <= text->height() + 0.5, name);
            if (seen.isEmpty())
                continue; // scrolled away
            QVERIFY2(window.contains(seen), name);
            QVERIFY2(qAbs(seen.width() - all.width()) < 0.5, name); // lists scroll one way only
        }
        for (qsizetype i = 0; i < texts.size(); ++i) {
            for (qsizetype j = 0; j < i; ++j) {
                const QRectF common = Console::shown(texts[i]) & Console::shown(texts[j]);
                QVERIFY2(common.width() < 0.5 || common.height() < 0.5,
                    texts[i]->property("text").toByteArray() + " / "
                        + texts[j]->property("text").toByteArray());
            }
        }
        for (QQuickItem *list : console.visibleItems()) {
            if (list->inherits("QQuickFlickable"))
                QVERIFY2(list->height() >= 20, list->metaObject()->className());
        }
    }

    void keyboardReachesEverything_data() { holds_data(); }

    void keyboardReachesEverything()
    {
        Console console;
        prepare(console);
        if (QTest::currentTestFailed())
            return;

        QStringList expected;
        const bool longNotes = console.view.width() < 2000;
        if (console.link->updateVersion.get() != QString() && longNotes)
            expected << console.link->updateNotes.get();
        if (console.link->updateVersion.get() != QString())
            expected << u"Update now to version 2.4.0"_s << u"Update later"_s;
        expected << u"PLAY A MIDI FILE  [ O ]"_s << u"VISUALISER  [ F ]"_s;
        if (console.link->state.get() == u"OFFLINE")
            expected << u"RESTART ENGINE"_s;
        expected << u"Voice control is off"_s
                 << u"12:00:00  "_s + console.link->transcript.get().constLast().text;
        const QString mode = console.link->mode;
        for (const CommandGroup &group : commandGroups()) {
            for (const Command &command : group.commands) {
                if (command.listed(mode))
                    expected << command.description(mode == u"compose");
            }
        }
        expected << console.link->jazz.get();

        QStringList reached;
        for (int i = 0; i < expected.size(); ++i) {
            QTest::keyClick(&console.view, Qt::Key_Tab);
            QQuickItem *focused = console.view.activeFocusItem();
            reached << Console::accessibleName(focused);
            const QRectF all = focused->mapRectToScene(focused->boundingRect());
            if (reached.last() == console.link->updateNotes.get())
                continue; // they scroll
            QCOMPARE(Console::shown(focused).size(), all.size()); // all of it, whatever scrolls
            QVERIFY2(
                QRectF(QPointF(), console.view.size()).contains(all), qPrintable(reached.last()));
        }
        QCOMPARE(reached, expected);
        QTest::keyClick(&console.view, Qt::Key_Tab);
        QCOMPARE(Console::accessibleName(console.view.activeFocusItem()), expected.first());
    }

private:
    static void prepare(Console &console)
    {
        QFETCH(QSize, size);
        QFETCH(bool, furnished);
        QFETCH(QByteArrayList, lines);
        for (const QByteArray &line : lines)
            console.link->handle(line);
        if (lines.size() > 6)
            console.link->engineIs(EngineState::Offline);
        console.show(size, furnished);
    }

    static bool isText(const QQuickItem *item) { return item->inherits("QQuickText"); }
};

} // namespace kelo

QTEST_MAIN(kelo::LayoutTest)
#include "layout_test.moc"
