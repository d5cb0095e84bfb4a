#include "app/arguments.h"
#include "app/launch.h"
#include "app/window_frame.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

class LaunchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheCommandLine()
    {
        const auto all =
            Arguments::read({u"kelo"_s, u"--what"_s, u"--hidden"_s, u"--snapshot"_s, u"out"_s});
        QVERIFY(all.hidden);
        QCOMPARE(all.snapshotFolder, u"out"_s);
        QVERIFY(!all.wakeTestReport);
        QCOMPARE(all.snapshotNames, QString());
        QVERIFY(!Arguments::read({u"kelo"_s, u"--snapshot"_s}).snapshotFolder);
        const auto some = Arguments::read({u"kelo"_s, u"--snapshot"_s, u"out"_s, u"console"_s});
        QCOMPARE(some.snapshotNames, u"console"_s);
        QVERIFY(!Arguments::read({u"kelo"_s, u"--wake-test"_s}).wakeTestReport);

        const auto unnamed = Arguments::read({u"kelo"_s, u"--wake-test"_s, u"report.txt"_s});
        QCOMPARE(unnamed.wakeTestReport, u"report.txt"_s);
        QCOMPARE(unnamed.wakeTestName, u"Kelo"_s);
        const auto named =
            Arguments::read({u"kelo"_s, u"--wake-test"_s, u"report.txt"_s, u"Melody"_s});
        QCOMPARE(named.wakeTestName, u"Melody"_s);
    }

    void opensNoWindowAtLogin_data()
    {
        const Table<bool, bool, bool, double, bool> row{
            "asked", "bySession", "loginItem", "uptime", "hidden"};
        row("by hand", false, false, false, 5000.0, false);
        row("asked to hide", true, false, false, 5000.0, true);
        row("started by the session", false, true, false, 5000.0, true);
        row("just booted, login item on", false, false, true, 119.9, true);
        row("booted a while ago", false, false, true, 120.0, false);
        row("just booted, login item off", false, false, false, 20.0, false);
    }

    void opensNoWindowAtLogin()
    {
        QFETCH(const bool, asked);
        QFETCH(const bool, bySession);
        QFETCH(const bool, loginItem);
        QFETCH(const double, uptime);
        QTEST(startsHidden({asked, false, bySession, loginItem, uptime}), "hidden");
    }

    void putsTheWindowWhereItCanBeReached_data()
    {
        const Table<QRect, QRect> row{"wanted", "placed"};
        row("where it was", QRect(300, 100, 1240, 840), QRect(300, 100, 1240, 840));
        row("on the second screen", QRect(2000, 50, 900, 600), QRect(2000, 50, 900, 600));
        row("half outside", QRect(-1000, 20, 1240, 840), QRect(-1000, 20, 1240, 840));
        row("its screen is gone", QRect(9000, 0, 1240, 840), QRect(180, 80, 1240, 840));
        row("gone, and larger than what is left", QRect(9000, 0, 5000, 5000),
            QRect(0, 0, 1600, 1000));
        row("only a sliver shows", QRect(3490, 0, 900, 600), QRect(350, 200, 900, 600));
    }

    void putsTheWindowWhereItCanBeReached()
    {
        QFETCH(const QRect, wanted);
        const std::array screens{QRect(0, 0, 1600, 1000), QRect(1600, 0, 1920, 1080)};
        QTEST(WindowFrame::placed(wanted, screens), "placed");
    }
};

QTEST_APPLESS_MAIN(LaunchTest)
#include "launch_test.moc"
