#include "console.h"
#include "hud/theme.h"
#include "support/table.h"

#include <QFontMetricsF>
#include <QSettings>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Console;
using test::Table;

namespace {

const QByteArrayList evening{"kbd Stage Piano 88", "say Good evening.", "heard play me something",
    "say Here is a slow waltz in D minor that I have just made up, for the left hand alone."};

const QByteArrayList crowded = evening
    + QByteArrayList{"name Philadelphia|Ann", "mode reaper", "hands right", "bandlevel medium",
        "jazz Swing feel|Walking bass lines for the left hand alone, slowly|Blues",
        "update 2.4.0|" + QByteArray("Better lessons for the left hand. ").repeated(30)};

/// A language in which every text is half as long again.
class LongerWords : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char * /*context*/, const char *source, const char * /*comment*/,
        int /*n*/) const override
    {
        const QString text = QString::fromUtf8(source);
        return text + text.left(text.size() / 2).replace(u'%', u'°');
    }
};

} // namespace

/// At every size and in every state: nothing overlaps, nothing is cut off, and the keyboard reaches
/// everything and sees where it is. The sizes are those that 900 by 600 and 1240 by 840 come to
/// when all is drawn 1 to 2.5 times as large.
class LayoutTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Must run first: the theme reads the setting once.
    void startsAsTheUserLeftIt()
    {
        QSettings().setValue(u"contrast"_s, true);
        QVERIFY(Hud::shared().contrast());
        QSettings().setValue(u"contrast"_s, false);
        QVERIFY(Hud::shared().contrast());
        Hud::shared().setContrast(false);
        const QFontMetricsF metrics(Hud::mono(24, QFont::Bold, 9));
        QCOMPARE(metrics.horizontalAdvance(u"iiii"_s), metrics.horizontalAdvance(u"WWWW"_s));
    }

    void holds_data()
    {
        const Table<QSize, QByteArrayList, QString, bool> row{"size", "lines", "state", "longer"};
        const QByteArrayList teach = evening + QByteArrayList{"mode teach", "daw 1"};
        const QByteArrayList visualiser{"window visual 1", "rollnew Waltz"};
        row("evening at 2560", {2560, 1440}, evening, u"ONLINE"_s, false);
        row("lesson at 1900", {1900, 700}, teach, u"ONLINE"_s, false);
        row("crowded at 3840", {3840, 2160}, crowded, u"OFFLINE"_s, false);
        for (const QSize size : {QSize(1240, 840), QSize(900, 600), QSize(827, 560),
                 QSize(620, 420), QSize(450, 300), QSize(360, 240)}) {
            const auto named = [size](const char *name) {
                return QByteArray(name) + " at " + QByteArray::number(size.width());
            };
            row(named("lesson").constData(), size, teach, u"ONLINE"_s, false);
            row(named("crowded").constData(), size, crowded, u"OFFLINE"_s, false);
            row(named("longer words").constData(), size, crowded, u"OFFLINE"_s, true);
            row(named("visualiser").constData(), size, visualiser, u"ONLINE"_s, false);
            row(named("visualiser, longer").constData(), size, visualiser, u"ONLINE"_s, true);
        }
    }

    void holds()
    {
        QFETCH(const QSize, size);
        QFETCH(const QByteArrayList, lines);
        QFETCH(const QString, state);
        QFETCH(const bool, longer);
        LongerWords words;
        if (longer)
            QCoreApplication::installTranslator(&words);
        Console console;
        for (const QByteArray &line : lines)
            console.link->handle(line);
        console.link.bring(state);
        console.show(size);
        QTest::qWait(400);
        const QString wrong = faults(console);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        QCOMPARE(console.standsUnlikeAt(QString::fromLatin1(QTest::currentDataTag())), u""_s);

        QStringList reached;
        for (;;) {
            QTest::keyClick(&console.view, Qt::Key_Tab);
            const QQuickItem *now = console.view.activeFocusItem();
            const QRectF all = now->mapRectToScene(now->boundingRect());
            const bool scrolls =
                all.height() > now->parentItem()->parentItem()->parentItem()->height();
            if (reached.contains(console.focused()))
                break;
            reached << console.focused();
            if (!scrolls) {
                QVERIFY2(Console::shown(now).size() == all.size(), qPrintable(reached.last()));
                QVERIFY2(QRectF({}, size).contains(all), qPrintable(reached.last()));
            }
        }
        QVERIFY(reached.size() > (console.link->visual ? 1 : 40));
    }

    void enlargesByStepsAsAtOnce()
    {
        Console stepped;
        for (const QByteArray &line : evening)
            stepped.link->handle(line);
        stepped.show({900, 600});
        for (const QSize size :
            {QSize(720, 480), QSize(600, 400), QSize(450, 300), QSize(360, 240)})
            stepped.resize(size);
        Console fresh;
        for (const QByteArray &line : evening)
            fresh.link->handle(line);
        fresh.show({360, 240});
        QTRY_COMPARE(stepped.texts(), fresh.texts());
        // What is said comes first where not everything shows.
        for (const QQuickItem *item : fresh.visibleItems()) {
            if (item->objectName() == u"caption")
                QVERIFY(Console::shown(item).top() < 30 && Console::shown(item).height() > 100);
        }
        fresh.resize({900, 600});
        fresh.resize({1240, 840});
        stepped.resize({1240, 840});
        QTRY_COMPARE(stepped.texts(), fresh.texts());
    }

    /// Colours, sizes, places: all that can be seen of the console without what others draw.
    void looksAsItDid_data()
    {
        const Table<QSize, QByteArrayList, QString, QString, int> row{
            "size", "lines", "script", "sheet", "number"};
        row("console", {1240, 840}, evening, u"> Surprise me"_s, u"console"_s, 0);
        row("crowded", {900, 600}, crowded, u"state OFFLINE\n> Update later"_s,
            u"console-crowded"_s, 0);
        row("stacked", {620, 700}, evening + QByteArrayList{"mode compose", "now noon"},
            u"> VISUALISER"_s, u"stacked"_s, 0);
        row("visualiser", {900, 160}, {"rollnew Waltz", "window visual 1"}, u"> BACK"_s,
            u"visualiser"_s, 0);
        row("visualiser-stacked", {450, 160}, {"window visual 1"}, u""_s, u"visualiser"_s, 1);
    }

    void looksAsItDid()
    {
        QFETCH(const QSize, size);
        QFETCH(const QByteArrayList, lines);
        QFETCH(const QString, script);
        Console console;
        console.voice.showLevel(0.4);
        for (const QByteArray &line : lines)
            console.link->handle(line);
        console.show(size);
        QCOMPARE(console.follow(script), u""_s);
        QFETCH(const QString, sheet);
        QFETCH(const int, number);
        QCOMPARE(console.unlike(sheet, number), u""_s);
    }

    void answersToTheMouse()
    {
        Console console;
        for (const QByteArray &line : crowded)
            console.link->handle(line);
        console.show({2560, 1440});
        const QStringList touched = console.touched({u"Update later"_s, u"Update now"_s,
            u"Voice control is off"_s, u"Blues"_s, u"PLAY A MIDI"_s});
        QCOMPARE(Console::standsUnlike(touched, u"touched"_s), u""_s);
    }

private:
    /// What is wrong with how the texts stand; nothing when all is well.
    static QString faults(const Console &console)
    {
        const QRectF window(QPointF(), console.view.size());
        QList<QQuickItem *> texts;
        for (QQuickItem *item : console.visibleItems()) {
            const bool list = item->inherits("QQuickFlickable");
            if (list && item->height() < 20)
                return u"a list without any height"_s;
            if (item->inherits("QQuickText") && !item->parentItem()->inherits("QQuickText")
                && !item->property("text").toString().isEmpty())
                texts.append(item);
        }
        for (QQuickItem *text : texts) {
            const QString name = text->property("text").toString();
            const QRectF all = text->mapRectToScene(text->boundingRect());
            const QRectF seen = Console::shown(text);
            if (text->property("truncated").toBool()
                || text->property("contentWidth").toDouble() > text->width() + 0.5
                || text->property("contentHeight").toDouble() > text->height() + 0.5)
                return u"cut off: "_s + name;
            if (seen.isEmpty())
                continue; // scrolled away
            if (!window.contains(seen) || qAbs(seen.width() - all.width()) >= 0.5)
                return u"half outside: "_s + name; // lists scroll one way only
            for (const QQuickItem *other : texts) {
                const QRectF common = seen & Console::shown(other);
                if (other != text && common.width() >= 0.5 && common.height() >= 0.5)
                    return u"overlap: "_s + name + u" / "_s + other->property("text").toString();
            }
        }
        return {};
    }
};

} // namespace kelo

QTEST_MAIN(kelo::LayoutTest)
#include "layout_test.moc"
