#include "link/manual_time.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace kelo;

class ManualTimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workRunsInOrderOfItsTime();
};

void ManualTimeTest::workRunsInOrderOfItsTime()
{
    ManualTime time;
    QStringList ran;
    auto gone = std::make_unique<QObject>();
    time.after(2, this, [&] { ran << u"b %1"_s.arg(time.now()); });
    time.after(1, this, [&] {
        ran << u"a"_s;
        time.after(1.5, this, [&] { ran << u"c"_s; });
    });
    time.after(1, gone.get(), [&] { ran << u"never"_s; });
    gone.reset();
    time.advance(2.25);
    QCOMPARE(ran, (QStringList{u"a"_s, u"b 1002"_s}));
    time.advance(0.25);
    QCOMPARE(ran.last(), u"c"_s);
    QCOMPARE(time.timeOfDay(), u"12:00:02"_s);
}

QTEST_GUILESS_MAIN(ManualTimeTest)
#include "manual_time_test.moc"
