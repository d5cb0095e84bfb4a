#include "engine_process.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The minute in which the engine shows itself.
class DemoTest : public EngineTest {
    Q_OBJECT

private Q_SLOTS:
    void showsEverythingByItself()
    {
        engine = std::make_unique<EngineProcess>(false);
        engine->start({u"--demo"_s});
        for (const QString &line : {u"kbd Demo piano"_s, u"say Hello.*"_s, u"heard teach me.*"_s,
                 u"mode teach"_s, u"out 64 \\d+"_s, u"flash wrong"_s,
                 u"say The fifth note was G, you played A\\..*"_s, u"flash good"_s,
                 u"heard play the minuet in g"_s, u"rollnew Minuet in G"_s, u"beat 0"_s,
                 u"live 1"_s, u"on 48 84"_s, u"live 0"_s, u"say It is .*"_s})
            QVERIFY2(!engine->waitFor(line, 30).isEmpty(), qPrintable(line));
        QVERIFY(!engine->lines.contains(u"@welcome"_s));
    }
};

QTEST_GUILESS_MAIN(DemoTest)
#include "demo_test.moc"
