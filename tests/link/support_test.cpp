#include "support/link_fixture.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::test;

class SupportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workRunsInOrderOfItsTime();
    void theScriptedEngineFollowsItsScript();
};

void SupportTest::workRunsInOrderOfItsTime()
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
}

void SupportTest::theScriptedEngineFollowsItsScript()
{
    LinkFixture fixture;
    fixture.engine.play("line @mode talk\nwait ~go\nraw @mode te\nraw ach\\n\n");
    fixture->start();
    QTRY_COMPARE(fixture->mode.get(), u"talk"_s);
    fixture->send(u"~go\n"_s);
    QTRY_COMPARE(fixture->mode.get(), u"teach"_s);
    fixture->stop();
    QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
    QCOMPARE(fixture.engine.input(), "~go\nq"_ba);
    QCOMPARE(fixture.engine.runs(), 1);
}

QTEST_GUILESS_MAIN(SupportTest)
#include "support_test.moc"
