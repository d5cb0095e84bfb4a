#include "support/table.h"
#include "visual/flash.h"
#include "visual/palette.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

class FlashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void flashesLookLikeTheirKind_data();
    void flashesLookLikeTheirKind();
    void theWindowFlashesAtMostThriceASecond_data();
    void theWindowFlashesAtMostThriceASecond();
};

void FlashTest::flashesLookLikeTheirKind_data()
{
    // outline: opacity
    const Table<QString, bool, double, double, double, double, QColor> row{
        "kind", "firstBeat", "age", "outline", "fill", "width", "colour"};
    const QColor white(Qt::white);
    const QColor green = colours::green.toQColor();
    const QColor red = QColor::fromRgbF(1.0F, 0.25F, 0.2F);
    row("first beat", u"beat"_s, true, 0.0, 0.8, 0.0, 6.0, white);
    row("beat, half gone", u"beat"_s, false, 0.09, 0.2, 0.0, 6.0, white);
    row("beat, gone", u"beat"_s, true, 0.18, 0.0, 0.0, 6.0, white);
    row("good", u"good"_s, true, 0.0, 0.95, 0.12, 14.0, green);
    row("wrong, half gone", u"wrong"_s, false, 0.275, 0.475, 0.06, 14.0, red);
    row("any other", u"hello"_s, false, 0.0, 0.95, 0.12, 14.0, white);
    row("long ago", u"good"_s, false, 1000.0, 0.0, 0.0, 14.0, green);
    row("still to come", u"good"_s, false, -0.55, 1.9, 0.24, 14.0, green);
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

void FlashTest::theWindowFlashesAtMostThriceASecond_data()
{
    // kinds: in turn; every: seconds; shown: least part of them
    const Table<QStringList, double, double> row{"kinds", "every", "shown"};
    const QStringList beat{u"beat"_s};
    row("60 beats a minute", beat, 1.0, 1.0);
    row("174 beats a minute", beat, 60 / 174.0, 1.0);
    row("240 beats a minute", beat, 0.25, 0.7);
    row("a flood of beats", beat, 0.001, 0.003);
    row("a flood of answers", {u"good"_s, u"wrong"_s}, 0.01, 0.03);
    row("all at once", {u"good"_s}, 0.0, 0.002);
    row("answers among beats", {u"beat"_s, u"beat"_s, u"beat"_s, u"good"_s, u"beat"_s}, 0.27, 0.6);
}

void FlashTest::theWindowFlashesAtMostThriceASecond()
{
    QFETCH(QStringList, kinds);
    QFETCH(double, every);
    QFETCH(double, shown);
    FlashLimit limit;
    QList<double> begun;
    constexpr int asked = 500;
    for (int i = 0; i < asked; ++i) {
        const QString &kind = kinds[i % kinds.size()];
        const double at = 50 + i * every;
        const auto begin = limit.begin(kind, at);
        QVERIFY(begin || kind == u"beat"_s);
        if (begin) {
            QVERIFY(kind == u"beat"_s ? *begin == at : *begin >= at);
            QVERIFY(*begin <= at + 1); // no answer comes long after its question
            if (begun.isEmpty() || begun.last() != *begin)
                begun << *begin;
        }
    }
    QVERIFY(std::ranges::is_sorted(begun));
    for (qsizetype i = 3; i < begun.size(); ++i)
        QVERIFY(begun[i] - begun[i - 3] >= 1);
    QVERIFY(static_cast<double>(begun.size()) >= asked * shown);
}

QTEST_GUILESS_MAIN(FlashTest)
#include "flash_test.moc"
