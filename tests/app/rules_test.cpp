#include "app/announcements.h"
#include "app/display_scale.h"
#include "app/overlay_rules.h"
#include "app/tray_menu.h"
#include "support/table.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

class RulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void panelShowsOnlyWhileTheDisplayIsNotSeen_data()
    {
        const Table<bool, MainWindow, bool> row{"enabled", "window", "shows"};
        row("not seen", true, MainWindow::Unseen, true);
        row("seen", true, MainWindow::Seen, false);
        row("no window", true, MainWindow::Missing, false);
        row("switched off", false, MainWindow::Unseen, false);
    }

    void panelShowsOnlyWhileTheDisplayIsNotSeen()
    {
        QFETCH(const bool, enabled);
        QFETCH(const MainWindow, window);
        QFETCH(const bool, shows);
        OverlayRules rules;
        QCOMPARE(rules.show(9, {100, enabled, window}), shows);
        QCOMPARE(rules.visible(), shows);
        OverlayRules showing;
        showing.show(60, {100, true, MainWindow::Unseen});
        QCOMPARE(showing.check(true, {100.25, enabled, window}), !shows);
        QCOMPARE(showing.visible(), shows);
    }

    void panelStaysWhileItIsOfUse()
    {
        const auto at = [](double now) { return PanelFacts{now, true, MainWindow::Unseen}; };
        OverlayRules rules;
        QVERIFY(!rules.check(true, at(0)));
        rules.show(OverlayRules::whileSpeaking, at(100));
        QCOMPARE(rules.hideAt(), 160.0);
        rules.show(OverlayRules::afterHearing, at(130));
        QCOMPARE(rules.hideAt(), 139.0);

        QVERIFY(!rules.check(true, at(131)));
        QCOMPARE(rules.hideAt(), 139.0);
        QVERIFY(!rules.check(true, at(138)));
        QCOMPARE(rules.hideAt(), 141.5);
        QVERIFY(!rules.check(false, at(141.5)));
        QVERIFY(rules.check(false, at(141.75)));
        QVERIFY(!rules.visible());
        QVERIFY2(!rules.check(false, at(142)), "it leaves once");
    }

    void announcesEachChangeOnce()
    {
        Announcements all;
        all.assume(Topic::Mode, u"Mode: STANDBY"_s);
        all.state(Topic::Mode, u"Mode: STANDBY"_s);
        QVERIFY(!all.next());
        QCOMPARE(all.take(100), QStringList());

        all.state(Topic::Mode, u"Mode: JAZZ"_s);
        QCOMPARE(all.take(100), QStringList{u"Mode: JAZZ"_s});
        all.state(Topic::Mode, u"Mode: JAZZ"_s);
        QCOMPARE(all.take(200), QStringList());

        all.state(Topic::Update, u"New update"_s);
        QCOMPARE(all.take(200).size(), 1);
        all.state(Topic::Update, {});
        QCOMPARE(all.take(210), QStringList());
        all.state(Topic::Update, u"New update"_s);
        QCOMPARE(all.take(220), QStringList{u"New update"_s});

        for (const double now : {300.0, 310.0}) {
            all.event(Topic::Caption, u"Once more."_s);
            QCOMPARE(all.take(now), QStringList{u"Once more."_s});
        }
    }

    void announcesTheLatestOfABurst()
    {
        Announcements all;
        all.state(Topic::Playing, u"Playing A"_s);
        all.state(Topic::Piano, u"Piano connected"_s);
        QCOMPARE(all.take(100), (QStringList{u"Playing A"_s, u"Piano connected"_s}));

        all.state(Topic::Playing, u"Stopped"_s);
        all.state(Topic::Playing, u"Playing B"_s);
        all.state(Topic::Piano, u"Piano lost"_s);
        all.state(Topic::Piano, u"Piano connected"_s);
        QCOMPARE(all.next(), 101.0);
        QCOMPARE(all.take(100.9), QStringList());
        QCOMPARE(all.take(101), QStringList{u"Playing B"_s});
        QVERIFY(!all.next());
    }

    void menuTellsTheTruth()
    {
        using Checked = std::optional<bool>;
        std::map<QString, Checked> checks;
        for (const auto &item : trayMenu({u"Luna"_s, true, false, true})) {
            QCOMPARE(item.action.has_value(), !item.title.isEmpty());
            if (item.checked)
                checks[item.title] = item.checked;
        }
        QCOMPARE(checks,
            (std::map<QString, Checked>{{u"Listen for “Luna”"_s, true},
                {u"Show the panel when Luna speaks"_s, false}, {u"Start when I log in"_s, true}}));
    }

    void scaleStaysWithinItsRange_data()
    {
        const Table<QVariant, double> row{"kept", "factor"};
        row("first start", QVariant(), 1.0);
        row("kept", QVariant(1.75), 1.75);
        row("as text", QVariant(u"2.5"_s), 2.5);
        row("between the steps", QVariant(1.3), 1.25);
        row("too large", QVariant(40), 1.0);
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
        QCOMPARE(scale.factor(), 0.75);
        QCOMPARE(DisplayScale(settings).factor(), 0.75);
        scale.reset();
        QCOMPARE(scale.factor(), 1.0);
    }
};

QTEST_GUILESS_MAIN(RulesTest)
#include "rules_test.moc"
