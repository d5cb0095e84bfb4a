#include "app/announcement_queue.h"
#include "app/arguments.h"
#include "app/desktop_motion.h"
#include "app/display_scale.h"
#include "app/launch.h"
#include "app/overlay_rules.h"
#include "app/window_frame.h"
#include "support/table.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

/// What the application decides, apart from windows and desktops.
class RulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheCommandLine_data()
    {
        // what was understood, as "flags|snapshots|their names|wake report|its name"
        const Table<QString> row{"understood"};
        row("", u"||-||Kelo"_s);
        row("--what --hidden", u"hidden||-||Kelo"_s);
        row("--show --quick", u"show quick||-||Kelo"_s);
        row("--snapshot", u"||-||Kelo"_s);
        row("--snapshot out", u"|out|-||Kelo"_s);
        row("--snapshot out console", u"|out|console||console"_s);
        row("--wake-test", u"||-||Kelo"_s);
        row("--hidden --wake-test report", u"hidden||-|report|Kelo"_s);
        row("--wake-test report Melody --quick", u"quick||Melody|report|Melody"_s);
        row("--help", u"help||-||Kelo"_s);
        row("-v", u"version||-||Kelo"_s);
    }

    void readsTheCommandLine()
    {
        const QString line = QString::fromLatin1(QTest::currentDataTag());
        const auto read = Arguments::read(u"kelo "_s.append(line).split(u' ', Qt::SkipEmptyParts));
        QStringList flags;
        for (const auto &[on, name] :
            {std::pair(read.help, u"help"_s), {read.version, u"version"_s},
                {read.hidden, u"hidden"_s}, {read.show, u"show"_s}, {read.quick, u"quick"_s}}) {
            if (on)
                flags += name;
        }
        const QStringList parts{flags.join(u' '), read.snapshotFolder.value_or(QString()),
            read.snapshotNames.isEmpty() ? u"-"_s : read.snapshotNames,
            read.wakeTestReport.value_or(QString()), read.wakeTestName};
        QTEST(parts.join(u'|'), "understood");
    }

    void followsTheDesktopsWishForLessMotion()
    {
        QList<bool> said;
        DesktopMotion motion([&said](bool reduced) { said << reduced; });
        const auto set = [&motion](
                             const QString &group, const QString &key, const QVariant &value) {
            motion.settingChanged(group, key, QDBusVariant(value));
        };
        const QString shared = u"org.freedesktop.appearance"_s;
        const QString older = u"org.gnome.desktop.interface"_s;
        set(shared, u"reduced-motion"_s, QVariant::fromValue(QDBusVariant(1U)));
        set(older, u"enable-animations"_s, false);
        set(shared, u"contrast"_s, 0U);
        set(shared, u"reduced-motion"_s, 0U);
        QCOMPARE(said, QList<bool>{true});
        set(older, u"enable-animations"_s, true);
        QCOMPARE(said, (QList<bool>{true, false}));
    }

    void opensNoWindowAtLogin()
    {
        const LaunchFacts byHand{.uptime = 5000};
        QVERIFY(!startsHidden(byHand));
        QVERIFY(startsHidden({.askedToHide = true, .uptime = 5000}));
        QVERIFY(startsHidden({.startedByLogin = true, .uptime = 5000}));
        QVERIFY(startsHidden({.loginItemOn = true, .uptime = 119.9}));
        QVERIFY(!startsHidden({.loginItemOn = true, .uptime = 120}));
        QVERIFY(!startsHidden({.uptime = 20}));
        QVERIFY(!startsHidden(
            {.askedToShow = true, .startedByLogin = true, .loginItemOn = true, .uptime = 20}));
    }

    void knowsWhoStartedIt_data()
    {
        const Table<QByteArray, QByteArray, bool> row{"id", "cgroup", "login"};
        const QByteArray slice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
        row("by hand", {}, slice + "app-terminal-12.scope\n", false);
        row("a session manager", "10a8", slice, true);
        row("our entry", {}, slice + "app-app.kelo.assistant@autostart.service\n", true);
        row("below it", {}, slice + "app-app.kelo.assistant@autostart.service/x\n1:a:/", true);
        row("a terminal's entry", {}, slice + "app-terminal@autostart.service\n", false);
        row("a longer name", {}, slice + "app-app.kelo.assistant@autostart.service2\n", false);
    }

    void knowsWhoStartedIt()
    {
        QFETCH(const QByteArray, id);
        QFETCH(const QByteArray, cgroup);
        QTEST(markedByLogin(id, cgroup), "login");
    }

    void putsTheWindowWhereItCanBeReached_data()
    {
        const Table<QRect, QRect> row{"wanted", "placed"};
        row("on the second screen", QRect(2000, 50, 900, 600), QRect(2000, 50, 900, 600));
        row("half outside", QRect(-1000, 20, 1240, 840), QRect(-1000, 20, 1240, 840));
        row("just enough", QRect(3320, 1020, 900, 600), QRect(3320, 1020, 900, 600));
        row("too little across", QRect(3321, 0, 900, 600), QRect(350, 200, 900, 600));
        row("too little down", QRect(1700, 1021, 900, 600), QRect(350, 200, 900, 600));
        row("its screen is gone", QRect(9000, 0, 5000, 840), QRect(0, 80, 1600, 840));
    }

    void putsTheWindowWhereItCanBeReached()
    {
        QFETCH(const QRect, wanted);
        const std::array screens{QRect(0, 0, 1600, 1000), QRect(1600, 0, 1920, 1080)};
        QTEST(WindowFrame::placed(wanted, screens), "placed");
    }

    void panelStaysWhileItIsOfUse()
    {
        const auto at = [](double now) { return PanelFacts{now, true, WindowSight::Unseen}; };
        OverlayRules rules;
        QVERIFY(!rules.check(true, at(0)));
        for (const PanelFacts &no : {PanelFacts{100, false, WindowSight::Unseen},
                 {100, true, WindowSight::Seen}, {100, true, WindowSight::Missing}}) {
            QVERIFY(!rules.show(9, no) && !rules.visible());
            QVERIFY(rules.show(60, at(100)) && rules.visible());
            QVERIFY(rules.check(true, no) && !rules.visible());
        }
        rules.show(60, at(100));
        rules.show(9, at(130)); // shorter than before
        QVERIFY(!rules.check(true, at(138)));
        QVERIFY(!rules.check(false, at(141.5)));
        QVERIFY(rules.check(false, at(141.75)));
        QVERIFY2(!rules.check(false, at(142)), "it leaves once");
        rules.show(9, at(200));
        QVERIFY2(!rules.check(true, at(201)) && !rules.check(false, at(208.9)), "never shorter");
    }

    void announcesEachChangeOnceAndTheLatestOfABurst()
    {
        AnnouncementQueue all;
        all.assume(Topic::Update, u"none"_s);
        all.state(Topic::Update, u"none"_s, 90);
        QVERIFY(!all.next());
        all.state(Topic::Update, u"A"_s, 100);
        all.state(Topic::Piano, u"lost"_s, 100);
        QCOMPARE(all.take(100), (QStringList{u"A"_s, u"lost"_s}));
        all.state(Topic::Update, u"none"_s, 100.1);
        all.state(Topic::Update, u"B"_s, 100.2);
        all.state(Topic::Piano, u"there"_s, 100.1);
        all.state(Topic::Piano, u"lost"_s, 100.2);
        QCOMPARE(all.next(), 101.0);
        QCOMPARE(all.take(100.9), QStringList());
        QCOMPARE(all.take(101), QStringList{u"B"_s});
        QVERIFY(!all.next());
        all.state(Topic::Update, {}, 110);
        QCOMPARE(all.take(110), QStringList());
        for (const double at : {300.0, 310.0}) {
            all.event(Topic::Choice, u"Once more."_s);
            QCOMPARE(all.take(at), QStringList{u"Once more."_s});
        }
    }

    void leavesToTheEngineWhatItSpeaksOf_data()
    {
        const Table<Topic, double, bool> row{"topic", "sentence", "announced"}; // a change at 100
        row("mode, with it", Topic::Mode, 100, false);
        row("mode, a little later", Topic::Mode, 100.6, false);
        row("mode, a little before", Topic::Mode, 99.4, false);
        row("mode, of something else before", Topic::Mode, 99.2, true);
        row("mode, much later", Topic::Mode, 100.8, true);
        row("playing", Topic::Playing, 100, false);
        row("the scale is the display's", Topic::Scale, 100, true);
    }

    void leavesToTheEngineWhatItSpeaksOf()
    {
        QFETCH(const Topic, topic);
        QFETCH(const double, sentence);
        AnnouncementQueue queue;
        if (sentence < 100)
            queue.engineSpoke(sentence);
        queue.state(topic, u"new"_s, 100);
        QStringList said = queue.take(100);
        if (sentence >= 100 && sentence <= 100.7)
            queue.engineSpoke(sentence);
        QCOMPARE(queue.take(100.69), QStringList());
        said += queue.take(100.71);
        QTEST(!said.isEmpty(), "announced");
        queue.state(topic, u"new"_s, 200);
        QVERIFY2(!queue.next(), "it is known by now");
    }

    void scaleStaysWithinItsRange_data()
    {
        const Table<QVariant, double> row{"kept", "factor"};
        row("first start", QVariant(), 1.0);
        row("as text", QVariant(u"2.5"_s), 2.5);
        row("between the steps", QVariant(1.3), 1.25);
        row("too large", QVariant(2.6), 1.0);
        row("too small", QVariant(0.7), 1.0);
        row("no number", QVariant(u"nan"_s), 1.0);
    }

    void scaleStaysWithinItsRange()
    {
        QFETCH(const QVariant, kept);
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(u"settings.ini"_s), QSettings::IniFormat);
        if (kept.isValid())
            settings.setValue(u"scale"_s, kept);
        DisplayScale scale(settings);
        QTEST(scale.factor(), "factor");
        for (int i = 0; i < 20; ++i)
            scale.larger();
        QCOMPARE(scale.factor(), 2.5);
        for (int i = 0; i < 20; ++i)
            scale.smaller();
        QCOMPARE(DisplayScale(settings).factor(), 0.75);
    }
};

QTEST_GUILESS_MAIN(RulesTest)
#include "rules_test.moc"
