#include "rig.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Evenings with the assistant, as written in scripts.txt, and what it tells in them.
class ScriptsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void goes_data() { kelo::test::scriptRows(QFINDTESTDATA("scripts.txt")); }

    void goes()
    {
        QFETCH(QString, script);
        QStringList steps = script.split(u'\n', Qt::SkipEmptyParts);
        Rig rig;
        rig.start(!steps.removeOne(u"stranger"_s));
        const QString failure = failureOf(rig, steps);
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
        const QString change =
            evenings_.unlikeKept(QString::fromUtf8(QTest::currentDataTag()), rig);
        QVERIFY2(change.isEmpty(), qPrintable(change));
    }

private:
    KeptEvenings evenings_{QFINDTESTDATA("evenings.txt")};
};

QTEST_GUILESS_MAIN(ScriptsTest)
#include "scripts_test.moc"
