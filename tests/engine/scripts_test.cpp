#include "rig.h"
#include "support/files.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Evenings with the assistant, as written in scripts.txt.
class ScriptsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void goes_data()
    {
        QTest::addColumn<QStringList>("steps");
        QStringList steps;
        QString name;
        const auto end = [&] {
            if (!name.isEmpty())
                QTest::newRow(qPrintable(name)) << steps;
            steps.clear();
        };
        const QString text = QString::fromUtf8(kelo::test::readFile(QFINDTESTDATA("scripts.txt")));
        for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts)) {
            if (line.startsWith(u"== ")) {
                end();
                name = line.mid(3);
            } else if (!line.startsWith(u'#')) {
                steps << line;
            }
        }
        end();
    }

    void goes()
    {
        QFETCH(QStringList, steps);
        Rig rig;
        const bool known = steps.first() != u"stranger";
        rig.start(known);
        const QString failure = failureOf(rig, known ? steps : steps.mid(1));
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
    }
};

QTEST_GUILESS_MAIN(ScriptsTest)
#include "scripts_test.moc"
