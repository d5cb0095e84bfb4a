#include "rig.h"
#include "support/table.h"

#include <QRegularExpression>
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

    void strolls_data()
    {
        const kelo::test::Table<QString> row{"name"};
        for (const QString &name : strolls_.names())
            row(qPrintable(name), name);
    }

    /// Whatever comes to somebody's mind, a line a step: what is done, then what is said and a
    /// number that changes with all that follows from it.
    void strolls()
    {
        QFETCH(QString, name);
        Rig rig;
        rig.start();
        QStringList told;
        for (const QString &line : strolls_.kept(name)) {
            const QString step = line.section(u" => "_s, 0, 0);
            const qsizetype from = rig.lines.size();
            const bool answers = step.startsWith(u"echo") || step.startsWith(u"wait");
            for (Recording *part : {&rig.music, &rig.keys, &rig.rhythm})
                answers ? void() : part->played.clear();
            rig.answered = answers ? rig.answered : 0;
            rig.turns = 0;
            QCOMPARE(failureOf(rig, {step}), QString());
            QString said = rig.lines.mid(from).filter(QRegularExpression(u"^say "_s)).join(u' ');
            told << step + u" => "_s + said.remove(u"say "_s)
                    + u" %1"_s.arg(qChecksum(toldBy(rig, from).toUtf8()));
        }
        QCOMPARE(strolls_.unlikeKept(name, told.join(u'\n')), QString());
    }

private:
    KeptEvenings evenings_{QFINDTESTDATA("evenings.txt")};
    KeptEvenings strolls_{QFINDTESTDATA("strolls.txt")};
};

QTEST_GUILESS_MAIN(ScriptsTest)
#include "scripts_test.moc"
