#include "hud/transcript_model.h"
#include "support/link_fixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

class TranscriptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesArriveBelowAndLeaveAbove();
    void followsABurstInOneStep();
    void isBoundedWhateverTheEngineSays();
    void changesItsLink();

private:
    static QString text(const TranscriptModel &model, int row)
    {
        return model.data(model.index(row), TranscriptModel::TextRole).toString();
    }
};

void TranscriptTest::linesArriveBelowAndLeaveAbove()
{
    test::LinkFixture link;
    TranscriptModel model;
    const QAbstractItemModelTester tester(
        &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.setLink(&link.link());

    for (int i = 1; i <= 61; ++i) {
        link->handle("say line " + QByteArray::number(i));
        QCoreApplication::processEvents();
        QCOMPARE(text(model, model.rowCount() - 1), u"line %1"_s.arg(i));
    }
    QCOMPARE(model.rowCount(), 60);
    QCOMPARE(text(model, 0), u"line 2"_s);
    QCOMPARE(model.data(model.index(0), TranscriptModel::TimeRole).toString(), u"12:00:00"_s);
    QCOMPARE(inserted.count(), 61);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(reset.count(), 0);
}

void TranscriptTest::followsABurstInOneStep()
{
    test::LinkFixture link;
    TranscriptModel model;
    model.setLink(&link.link());
    link.say({"say before"});
    QCoreApplication::processEvents();

    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 1000; ++i)
        link->handle("say line " + QByteArray::number(i));
    QCoreApplication::processEvents();
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(model.rowCount(), 60);
    QCOMPARE(text(model, 0), u"line 940"_s);
    QCOMPARE(text(model, 59), u"line 999"_s);
}

void TranscriptTest::isBoundedWhateverTheEngineSays()
{
    test::LinkFixture link;
    TranscriptModel model;
    model.setLink(&link.link());
    for (int i = 0; i < 500; ++i)
        link->handle("heard " + QByteArray::number(i)); // these do not trim the link's own list
    link->handle("heard " + QByteArray(1'000'000, 'x'));
    QCoreApplication::processEvents();
    QCOMPARE(model.rowCount(), TranscriptModel::mostRows);
    QCOMPARE(text(model, model.rowCount() - 1).size(), TranscriptModel::mostText);
}

void TranscriptTest::changesItsLink()
{
    test::LinkFixture first;
    test::LinkFixture second;
    first.say({"say of the first"});
    second.say({"say of the second", "say and more"});
    TranscriptModel model;
    const QAbstractItemModelTester tester(
        &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setLink(&first.link());
    model.setLink(&second.link());
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(text(model, 0), u"of the second"_s);

    first.say({"say not heard here"});
    QCoreApplication::processEvents();
    QCOMPARE(model.rowCount(), 2);
    model.setLink(nullptr);
    QCOMPARE(model.rowCount(), 0);
}

} // namespace kelo

QTEST_GUILESS_MAIN(kelo::TranscriptTest)
#include "transcript_test.moc"
