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
    void init()
    {
        model_ = std::make_unique<TranscriptModel>();
        link_ = std::make_unique<test::LinkFixture>();
        model_->setLink(&link_->link());
    }

    void linesArriveBelowAndLeaveAbove()
    {
        const QAbstractItemModelTester tester(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy inserted(model_.get(), &QAbstractItemModel::rowsInserted);
        const QSignalSpy removed(model_.get(), &QAbstractItemModel::rowsRemoved);
        const QSignalSpy reset(model_.get(), &QAbstractItemModel::modelReset);
        for (int i = 1; i <= 61; ++i) {
            handle("say line " + QByteArray::number(i));
            QCOMPARE(text(model_->rowCount() - 1), u"line %1"_s.arg(i));
        }
        QCOMPARE(model_->rowCount(), 60);
        QCOMPARE(text(0), u"line 2"_s);
        QCOMPARE(inserted.count(), 61);
        QCOMPARE(removed.count(), 1);
        QCOMPARE(reset.count(), 0);
        model_->setLink(nullptr);
        QCOMPARE(model_->rowCount(), 0);
    }

    void followsABurstInOneStep()
    {
        handle("say before");
        const QSignalSpy inserted(model_.get(), &QAbstractItemModel::rowsInserted);
        for (int i = 0; i < 999; ++i)
            link_->link().handle("say line");
        handle("say the last one");
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(model_->rowCount(), 60);
        QCOMPARE(text(0), u"line"_s);
        QCOMPARE(text(59), u"the last one"_s);
    }

    void isBoundedWhateverTheEngineSays()
    {
        for (int i = 0; i < 500; ++i)
            link_->link().handle("heard more"); // these do not trim the link's own list
        handle("heard " + QByteArray(1'000'000, 'x'));
        QCOMPARE(model_->rowCount(), TranscriptModel::mostRows);
        QCOMPARE(text(model_->rowCount() - 1).size(), TranscriptModel::mostText);
    }

private:
    /// Has the link handle a line, and the model follow.
    void handle(const QByteArray &line)
    {
        link_->say({line});
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QString text(int row) const
    {
        return model_->data(model_->index(row), TranscriptModel::TextRole).toString();
    }

    std::unique_ptr<test::LinkFixture> link_;
    std::unique_ptr<TranscriptModel> model_;
};

} // namespace kelo

QTEST_GUILESS_MAIN(kelo::TranscriptTest)
#include "transcript_test.moc"
