#include "visual/flash.h"
#include "visual/palette.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;

class FlashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void flashesLookLikeTheirKind_data();
    void flashesLookLikeTheirKind();
    void theWindowFillsAtMostThriceASecond();
};

void FlashTest::flashesLookLikeTheirKind_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("firstBeat");
    QTest::addColumn<double>("age");
    QTest::addColumn<double>("outline"); // opacity
    QTest::addColumn<double>("fill");
    QTest::addColumn<double>("width");
    QTest::addColumn<QColor>("colour");

    const QColor white(Qt::white);
    const QColor green = colours::green.toQColor();
    const QColor red = QColor::fromRgbF(1.0F, 0.25F, 0.2F);
    QTest::newRow("first beat") << u"beat"_s << true << 0.0 << 0.8 << 0.0 << 6.0 << white;
    QTest::newRow("beat, half gone") << u"beat"_s << false << 0.09 << 0.2 << 0.0 << 6.0 << white;
    QTest::newRow("beat, gone") << u"beat"_s << true << 0.18 << 0.0 << 0.0 << 6.0 << white;
    QTest::newRow("good") << u"good"_s << true << 0.0 << 0.95 << 0.12 << 14.0 << green;
    QTest::newRow("wrong, half gone")
        << u"wrong"_s << false << 0.275 << 0.475 << 0.06 << 14.0 << red;
    QTest::newRow("any other") << u"hello"_s << false << 0.0 << 0.95 << 0.12 << 14.0 << white;
    QTest::newRow("long ago") << u"good"_s << false << 1000.0 << 0.0 << 0.0 << 14.0 << green;
    QTest::newRow("still to come") << u"good"_s << false << -0.55 << 1.9 << 0.24 << 14.0 << green;
}

void FlashTest::flashesLookLikeTheirKind()
{
    QFETCH(QString, kind);
    QFETCH(bool, firstBeat);
    QFETCH(double, age);
    QFETCH(double, outline);
    QFETCH(double, fill);
    QFETCH(QColor, colour);
    const FlashLook look = flashLook(kind, firstBeat, age);
    QVERIFY(std::abs(look.outline.alpha - outline) < 1e-5);
    QVERIFY(std::abs(look.fill.alpha - fill) < 1e-5);
    QTEST(look.width, "width");
    for (const Colour &part : {look.outline, look.fill}) {
        const Colour opaque{part.red, part.green, part.blue, 1};
        QCOMPARE(opaque.toQColor(), colour);
    }
}

void FlashTest::theWindowFillsAtMostThriceASecond()
{
    FlashLimit limit;
    QList<double> fills;
    for (int i = 0; i < 200; ++i) {
        const double at = 50 + i * 0.0625;
        if (limit.mayFill(at))
            fills << at;
    }
    QVERIFY(fills.size() > 30); // it limits, it does not forbid
    for (qsizetype i = 3; i < fills.size(); ++i)
        QVERIFY(fills[i] - fills[i - 3] >= 1);
}

QTEST_GUILESS_MAIN(FlashTest)
#include "flash_test.moc"
