#include "support/table.h"
#include "visual/flash/flash.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

class FlashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void flashesFadeAndBeatsOnlyOutline()
    {
        for (const QString &kind : {u"beat"_s, u"good"_s, u"wrong"_s, u"hello"_s}) {
            const auto opacity = [&kind](double part) {
                const FlashLook look = flashLook(kind, false, part * flashDuration(kind));
                return std::pair(look.outline.alpha, look.fill.alpha);
            };
            const auto [outline, fill] = opacity(0);
            QCOMPARE(fill > 0, kind != u"beat"_s);
            QVERIFY(outline > 0.3F && fill < 0.2F); // the text under it stays readable
            QVERIFY(std::abs(opacity(0.5).first - outline / 2) < 1e-5F);
            QCOMPARE(opacity(1), std::pair(0.0F, 0.0F));
            QCOMPARE(opacity(1000), std::pair(0.0F, 0.0F));
        }
        QVERIFY(flashLook(u"beat"_s, true, 0).outline.alpha
            > flashLook(u"beat"_s, false, 0).outline.alpha);
        QVERIFY(flashLook(u"good"_s, false, 0).fill != flashLook(u"wrong"_s, false, 0).fill);
    }

    void theWindowFlashesAtMostThriceASecond_data()
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
        row("answers among beats", {u"beat"_s, u"beat"_s, u"beat"_s, u"good"_s, u"beat"_s}, 0.27,
            0.6);
    }

    void theWindowFlashesAtMostThriceASecond()
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
};

QTEST_GUILESS_MAIN(FlashTest)
#include "flash_test.moc"
