#include "script.h"
#include "support/table.h"
#include "visual/flash/flash.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

class FlashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beatsLeaveRoom_data()
    {
        // shown: of a dozen beats in bars of four, those that flash
        const Table<int, QString> row{"tempo", "shown"};
        row("60 a minute", 60, u"oooooooooooo"_s);
        row("119 a minute", 119, u"oooooooooooo"_s);
        row("150 a minute", 150, u"o-o-o-o-o-o-"_s);
        row("239 a minute", 239, u"o-o-o-o-o-o-"_s);
        row("400 a minute", 400, u"o---o---o---"_s);
    }

    void beatsLeaveRoom()
    {
        QFETCH(int, tempo);
        FlashLimit limit;
        QString shown;
        for (int i = 0; i < 12; ++i)
            shown += limit.begin(u"beat"_s, i % 4, 50 + i * 60.0 / tempo) ? u'o' : u'-';
        QTEST(shown, "shown");
    }

    /// Whatever happens: at most three flashes in any second, and an answer shows at once.
    void answersAreNeverLate_data()
    {
        const Table<double, double> row{"beats", "answers"}; // a second, on average
        row("answers now and then", 0.0, 1.0);
        row("a flood of answers", 0.0, 300.0);
        row("a lesson with the metronome", 2.0, 1.0);
        row("fast beats", 4.0, 2.0);
        row("a flood of both", 300.0, 300.0);
    }

    void answersAreNeverLate()
    {
        QFETCH(double, beats);
        QFETCH(double, answers);
        std::mt19937 random(5);
        std::uniform_real_distribution<double> part;
        FlashLimit limit;
        QList<double> begun{-10};
        double at = 0;
        for (int i = 0; i < 3000; ++i) {
            at += -std::log(1 - part(random)) / (beats + answers);
            const bool beat = part(random) < beats / (beats + answers);
            const auto begin = limit.begin(beat ? u"beat"_s : u"good"_s, i % 4, at);
            if (beat && !begin)
                continue;
            QVERIFY(begin && *begin <= at);
            QVERIFY(beat ? *begin == at : flashLook(u"good"_s, false, at - *begin).fill.alpha > 0);
            if (*begin != begun.back())
                begun << *begin;
        }
        for (qsizetype i = 4; i < begun.size(); ++i)
            QVERIFY(begun[i] - begun[i - 3] >= 1);
    }
};

QTEST_GUILESS_MAIN(FlashTest)
#include "flash_test.moc"
