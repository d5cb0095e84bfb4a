#include "app/announcement_queue.h"
#include "app/arguments.h"
#include "app/desktop/desktop_settings.h"
#include "app/desktop_ties.h"
#include "app/display_scale.h"
#include "app/launch.h"
#include "app/overlay_rules.h"
#include "app/session.h"
#include "app/single_instance.h"
#include "app/window_frame.h"
#include "support/table.h"

#include <QDBusVariant>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::checkRows;

/// What the application decides, apart from windows and desktops.
class RulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void twoStartsAtOnceAreOne()
    {
        const QTemporaryDir data;
        SingleInstance first(data.path());
        QVERIFY(!first.raisedAnother());
        bool raised = false;
        std::thread second([&] { raised = SingleInstance(data.path()).raisedAnother(); });
        QTest::qSleep(150); // it has looked for the first one by now
        first.listen();
        second.join();
        QVERIFY(raised);
    }

    void looksForRoomWhereAFolderWillBe()
    {
        QVERIFY(session::hasRoom(QDir::tempPath().toStdString() + "/not/there"));
        QVERIFY(!session::hasRoom("/proc/not/there"));
    }

    void readsTheCommandLine()
    {
        // flags|snapshots|their names|wake report|its name
        const auto understood = [](const QString &line) {
            const auto read = Arguments::read((u"kelo "_s + line).split(u' ', Qt::SkipEmptyParts));
            QStringList flags;
            for (const auto &[on, name] :
                {std::pair(read.help, u"help"_s), {read.version, u"version"_s},
                    {read.hidden, u"hidden"_s}, {read.show, u"show"_s}, {read.quick, u"quick"_s}})
                flags += on ? name : QString();
            flags.removeAll(QString());
            return QStringList{flags.join(u' '), read.snapshotFolder.value_or(QString()),
                read.snapshotNames, read.wakeTestReport.value_or(QString()), read.wakeTestName}
                .join(u'|');
        };
        for (const auto &[line, expected] :
            {std::pair(u""_s, u"||||Kelo"_s), {u"--what --hidden"_s, u"hidden||||Kelo"_s},
                {u"--show --quick"_s, u"show quick||||Kelo"_s}, {u"--snapshot"_s, u"||||Kelo"_s},
                {u"--snapshot out"_s, u"|out|||Kelo"_s},
                {u"--snapshot out console"_s, u"|out|console||console"_s},
                {u"--wake-test"_s, u"||||Kelo"_s},
                {u"--hidden --wake-test report"_s, u"hidden|||report|Kelo"_s},
                {u"--wake-test report Melody --quick"_s, u"quick||Melody|report|Melody"_s},
                {u"--help"_s, u"help||||Kelo"_s}, {u"-v"_s, u"version||||Kelo"_s}})
            QCOMPARE(line + u" -> "_s + understood(line), line + u" -> "_s + expected);
    }

    void followsTheDesktopsWishes()
    {
        struct Setting {
            QString group;
            QString key;
            QVariant value;
        };
        const QString shared = u"org.freedesktop.appearance"_s;
        const QString older = u"org.gnome.desktop.interface"_s;
        const auto wishes = [](const Setting &setting) {
            QList<DesktopWishes> told;
            DesktopSettings settings([&told](const DesktopWishes &all) { told << all; });
            settings.settingChanged(setting.group, setting.key, setting.value);
            settings.settingChanged(setting.group, setting.key, setting.value);
            return told.size() > 1 ? DesktopWishes{true, true, 99} : told.value(0);
        };
        checkRows<Setting, DesktopWishes>(wishes,
            {{"contrast", {shared, u"contrast"_s, QVariant::fromValue(QDBusVariant(1U))},
                 {.contrast = true}},
                {"less contrast", {shared, u"contrast"_s, 2U}, {}},
                {"its older name",
                    {u"org.gnome.desktop.a11y.interface"_s, u"high-contrast"_s, true},
                    {.contrast = true}},
                {"motion", {shared, u"reduced-motion"_s, 1U}, {.lessMotion = true}},
                {"its older name", {older, u"enable-animations"_s, false}, {.lessMotion = true}},
                {"texts", {older, u"text-scaling-factor"_s, 1.5}, {.textScale = 1.5}},
                {"something else", {older, u"contrast"_s, 1U}, {}}});
    }

    void staysAwakeForWhoPlays()
    {
        const double always = std::numeric_limits<double>::infinity();
        checkRows<Doings, double>([](const Doings &each) { return awakeFor(each, 1000); },
            {{"a lesson", {.mode = u"teach"_s, .lastSign = 990}, 590},
                {"left open", {.mode = u"jazz"_s, .lastSign = 300}, 0},
                {"a piece", {.mode = u"idle"_s, .rolling = true}, always},
                {"paused", {.mode = u"idle"_s, .rolling = true, .paused = true}, 0},
                {"a menu", {.mode = u"menu"_s, .lastSign = 990}, 0}});
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

    void knowsWhoStartedIt()
    {
        const QByteArray slice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
        checkRows<QByteArray, bool>(
            [&](const QByteArray &unit) { return markedByLogin({}, slice + unit); },
            {{"by hand", "app-terminal-12.scope\n", false},
                {"our entry", "app-app.kelo.assistant@autostart.service\n", true},
                {"below it", "app-app.kelo.assistant@autostart.service/x\n1:a:/", true},
                {"a terminal's entry", "app-terminal@autostart.service\n", false},
                {"a longer name", "app-app.kelo.assistant@autostart.service2\n", false}});
        QVERIFY2(markedByLogin("10a8", slice), "a session manager");
    }

    void putsTheWindowWhereItCanBeReached()
    {
        const std::array screens{QRect(0, 0, 1600, 1000), QRect(1600, 0, 1920, 1080)};
        checkRows<QRect, QRect>([&](QRect wanted) { return WindowFrame::placed(wanted, screens); },
            {{"on the second screen", {2000, 50, 900, 600}, {2000, 50, 900, 600}},
                {"half outside", {-1000, 20, 1240, 840}, {-1000, 20, 1240, 840}},
                {"just enough", {3320, 1020, 900, 600}, {3320, 1020, 900, 600}},
                {"too little across", {3321, 0, 900, 600}, {350, 200, 900, 600}},
                {"too little down", {1700, 1021, 900, 600}, {350, 200, 900, 600}},
                {"larger than its screen", {-20, 20, 1240, 2000}, {180, 32, 1240, 936}},
                {"its screen is gone", {9000, 0, 5000, 840}, {6, 80, 1588, 840}}});
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

    void leavesToTheEngineWhatItSpeaksOf()
    {
        // Whether a change at 100 is announced when a sentence begins at that time.
        const auto announced = [](const std::pair<Topic, double> &spoken) {
            const auto [topic, sentence] = spoken;
            AnnouncementQueue queue;
            if (sentence < 100)
                queue.engineSpoke(sentence);
            queue.state(topic, u"new"_s, 100);
            QStringList said = queue.take(100);
            if (sentence >= 100 && sentence <= 100.7)
                queue.engineSpoke(sentence);
            said += queue.take(100.69).isEmpty() ? queue.take(100.71) : QStringList{u"early"_s};
            queue.state(topic, u"new"_s, 200);
            return queue.next() ? u"twice"_s : said.join(u' ');
        };
        checkRows<std::pair<Topic, double>, QString>(announced,
            {{"with it", {Topic::Mode, 100}, QString()},
                {"a little later", {Topic::Mode, 100.6}, QString()},
                {"a little before", {Topic::Mode, 99.4}, QString()},
                {"of something else before", {Topic::Mode, 99.2}, u"new"_s},
                {"much later", {Topic::Mode, 100.8}, u"new"_s},
                {"playing", {Topic::Playing, 100}, QString()},
                {"the scale is the display's", {Topic::Scale, 100}, u"new"_s}});
        QCOMPARE(joined({u"One."_s, u"Two"_s, u"Three?"_s, u"Four"_s}), u"One. Two. Three? Four"_s);
    }

    void isLargeEnoughOnEveryScreen()
    {
        checkRows<ScreenFacts, double>(suitableScale,
            {{"as designed", {{1920, 1080}, 1, 96, 1}, 1},
                {"many pixels, no size told", {{3840, 2160}, 1, 0, 1}, 2},
                {"many pixels, enlarged by the desktop", {{1920, 1080}, 2, 192, 1}, 1},
                {"small pixels", {{1920, 1080}, 1, 166, 1}, 1.5},
                {"a size that cannot be", {{1920, 1080}, 1, 501, 1}, 1},
                {"larger texts", {{1920, 1080}, 1, 96, 1.5}, 1.5},
                {"larger texts, enlarged by the desktop", {{1280, 720}, 1.5, 96, 1.5}, 1},
                {"smaller texts", {{1920, 1080}, 1, 96, 0.8}, 1},
                {"little room", {{1280, 800}, 1, 96, 3}, 1.75},
                {"no room", {{800, 600}, 1, 200, 2}, 1.25}, {"nonsense", {{}, 0, 0, 0}, 1}});
    }

    void scaleSuitsTheDesktopUntilTheUserChooses()
    {
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(u"settings.ini"_s), QSettings::IniFormat);
        DisplayScale scale(settings);
        scale.suit({{1920, 1080}, 1, 0, 1});
        QVERIFY(!scale.takeNews());
        scale.setTextScale(1.5);
        QCOMPARE(scale.factor(), 1.5);
        QVERIFY(scale.takeNews());
        QVERIFY2(!DisplayScale(settings).takeNews() && !scale.takeNews(), "told once");
        scale.larger();
        scale.setTextScale(1.25);
        QCOMPARE(scale.factor(), 1.75);
        scale.reset();
        QCOMPARE(DisplayScale(settings).factor(), 1.25);
    }

    void scaleStaysWithinItsRange()
    {
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(u"settings.ini"_s), QSettings::IniFormat);
        const auto factor = [&](const QVariant &kept) {
            if (kept.isValid())
                settings.setValue(u"scale"_s, kept);
            return DisplayScale(settings).factor();
        };
        checkRows<QVariant, double>(factor,
            {{"first start", QVariant(), 1.0}, {"as text", u"2.5"_s, 2.5},
                {"between the steps", 1.3, 1.25}, {"too large", 2.6, 1.0}, {"too small", 0.7, 1.0},
                {"no number", u"nan"_s, 1.0}});
        DisplayScale scale(settings);
        int changes = 0;
        connect(&scale, &DisplayScale::factorChanged, this, [&changes] { ++changes; });
        for (int i = 0; i < 20; ++i)
            scale.larger();
        QCOMPARE(scale.factor(), 2.5);
        QCOMPARE(changes, 6);
        for (int i = 0; i < 20; ++i)
            scale.smaller();
        QCOMPARE(DisplayScale(settings).factor(), 0.75);
    }
};

QTEST_GUILESS_MAIN(RulesTest)
#include "rules_test.moc"
