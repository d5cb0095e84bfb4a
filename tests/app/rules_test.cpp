#include "app/announcement_queue.h"
#include "app/display_scale.h"
#include "app/overlay_rules.h"
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
        const Table<bool, WindowSight, bool> row{"enabled", "window", "shows"};
        row("not seen", true, WindowSight::Unseen, true);
        row("seen", true, WindowSight::Seen, false);
        row("no window", true, WindowSight::Missing, false);
        row("switched off", false, WindowSight::Unseen, false);
    }

    void panelShowsOnlyWhileTheDisplayIsNotSeen()
    {
        QFETCH(const bool, enabled);
        QFETCH(const WindowSight, window);
        QFETCH(const bool, shows);
        OverlayRules rules;
        QCOMPARE(rules.show(9, {100, enabled, window}), shows);
        QCOMPARE(rules.visible(), shows);
        OverlayRules showing;
        showing.show(60, {100, true, WindowSight::Unseen});
        QCOMPARE(showing.check(true, {100.25, enabled, window}), !shows);
        QCOMPARE(showing.visible(), shows);
    }

    void panelStaysWhileItIsOfUse()
    {
        const auto at = [](double now) { return PanelFacts{now, true, WindowSight::Unseen}; };
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
        AnnouncementQueue all;
        double now = 90;
        all.assume(Topic::Mode, u"Mode: STANDBY"_s);
        all.state(Topic::Mode, u"Mode: STANDBY"_s, now);
        QVERIFY(!all.next());
        QCOMPARE(all.take(100), QStringList());

        all.state(Topic::Mode, u"Mode: JAZZ"_s, now);
        QCOMPARE(all.take(now), QStringList());
        QCOMPARE(all.take(100), QStringList{u"Mode: JAZZ"_s});
        all.state(Topic::Mode, u"Mode: JAZZ"_s, now);
        QCOMPARE(all.take(200), QStringList());

        all.state(Topic::Update, u"New update"_s, now);
        QCOMPARE(all.take(200).size(), 1);
        all.state(Topic::Update, {}, now);
        QCOMPARE(all.take(210), QStringList());
        all.state(Topic::Update, u"New update"_s, now);
        QCOMPARE(all.take(220), QStringList{u"New update"_s});

        for (const double at : {300.0, 310.0}) {
            all.event(Topic::Choice, u"Once more."_s);
            QCOMPARE(all.take(at), QStringList{u"Once more."_s});
        }
    }

    void announcesTheLatestOfABurst()
    {
        AnnouncementQueue all;
        all.state(Topic::Update, u"Update A"_s, 100);
        all.state(Topic::Piano, u"Piano connected"_s, 100);
        QCOMPARE(all.take(100), (QStringList{u"Update A"_s, u"Piano connected"_s}));

        all.state(Topic::Update, u"None"_s, 100.1);
        all.state(Topic::Update, u"Update B"_s, 100.2);
        all.state(Topic::Piano, u"Piano lost"_s, 100.1);
        all.state(Topic::Piano, u"Piano connected"_s, 100.2);
        QCOMPARE(all.next(), 101.0);
        QCOMPARE(all.take(100.9), QStringList());
        QCOMPARE(all.take(101), QStringList{u"Update B"_s});
        QVERIFY(!all.next());
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
        if (sentence > 100.7)
            queue.engineSpoke(sentence);
        QTEST(!said.isEmpty(), "announced");
        QVERIFY(!queue.next());
        queue.state(topic, u"new"_s, 200);
        QVERIFY2(!queue.next(), "it is known by now");
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
