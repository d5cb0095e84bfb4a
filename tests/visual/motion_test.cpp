#include "support/table.h"
#include "visual/motion/frame_timing.h"
#include "visual/motion/motion_time.h"
#include "visual/sprites/sprite_item.h"

#include <QTest>

#include <random>

using namespace kelo;
using kelo::test::Table;

/// When frames come, what time they show, and when motion that nothing asks for rests.
class MotionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesComeAsOftenAsAskedFor_data()
    {
        const Table<int, int, int> row{"refresh", "rate", "frames"};
        for (const int refresh : {50, 60, 75, 90, 120, 144, 165, 240}) {
            for (const int rate : {60, 120}) {
                row(QByteArray::number(refresh) + " Hz, " + QByteArray::number(rate), refresh, rate,
                    std::min(refresh, rate));
            }
        }
        row("a little more than asked for", 62, 60, 62);
        row("a slow item", 144, 31, 31);
    }

    void framesComeAsOftenAsAskedFor()
    {
        QFETCH(int, refresh);
        QFETCH(int, rate);
        const double period = 1.0 / refresh;
        std::mt19937 random(1);
        FrameCadence cadence;
        QList<int> due;
        for (int i = 0; i < 10 * refresh; ++i) {
            const double jitter =
                (static_cast<double>(random() % 1000) / 1000 - 0.5) * period * 0.6;
            if (cadence.isDue(100 + i * period + jitter, period, rate))
                due << i;
        }
        QFETCH(int, frames);
        QVERIFY2(std::abs(due.size() - 10 * frames) <= 20, QByteArray::number(due.size()));
        // They are spread as evenly as the screen allows.
        const int gap = (refresh + frames - 1) / frames;
        for (qsizetype i = 1; i < due.size(); ++i)
            QVERIFY2(due[i] - due[i - 1] <= gap + 1, QByteArray::number(due[i] - due[i - 1]));
    }

    void framesAtOnceAreFramesEach()
    {
        FrameCadence cadence;
        int due = 0;
        for (int i = 0; i < 9; ++i)
            due += cadence.isDue(100, 1.0 / 240, 60);
        QCOMPARE(due, 4); // two that were owed, then every fourth
    }

    void fallingIsSmoothUnderAJitteryClock_data()
    {
        // refresh: frames a second; leftOut: every so many frames one is
        const Table<double, int> row{"refresh", "leftOut"};
        row("60 Hz", 60.0, 0);
        row("120 Hz", 120.0, 0);
        row("60 Hz, frames left out", 60.0, 7);
    }

    void fallingIsSmoothUnderAJitteryClock()
    {
        QFETCH(double, refresh);
        QFETCH(int, leftOut);
        const double period = 1 / refresh;
        std::mt19937 random(1);
        FrameClock clock;
        double shown = clock.step(100, period);
        double worst = 0; // how far a step is from whole frames
        for (int i = 1; i < 500; ++i) {
            if (leftOut > 0 && i % leftOut == 0)
                continue;
            const double jitter =
                (static_cast<double>(random() % 1000) / 1000 - 0.5) * period * 0.6;
            const double now = 100 + i * period + jitter;
            const double next = clock.step(now, period);
            QVERIFY(next >= shown && std::abs(next - now) < period);
            const double frames = (next - shown) / period;
            worst = std::max(worst, std::abs(frames - std::round(frames)));
            shown = next;
        }
        QVERIFY2(worst < 0.06, QByteArray::number(worst));
        QCOMPARE(clock.step(shown + 5, period), shown + 5); // after a stall it is exact at once
        QCOMPARE(clock.step(1, period), 1.0);
        // It catches up with a clock that runs on, but not at once.
        QVERIFY(std::abs(clock.step(1.4 * period + 1, period) - (1 + 1.04 * period)) < 1e-9);
    }

    void motionRests_data()
    {
        // every: seconds between events, the last of them at `until`; at 20 s: the pace, whether it
        // rests, whether it is lively, how far the time is behind
        const Table<Drift, double, double, double, bool, bool, double> row{
            "drift", "every", "until", "pace", "rests", "lively", "behind"};
        row("nothing happens", Drift::WhileLively, 100.0, 0.0, 0.0, true, false, 14.0);
        row("long ago", Drift::WhileLively, 1.0, 12.0, 0.0, true, false, 2.0);
        row("slowing down", Drift::WhileLively, 1.0, 14.0, 0.5, false, false, 0.1875);
        row("calm", Drift::WhileLively, 1.0, 16.0, 1.0, false, false, 0.0);
        row("just now", Drift::WhileLively, 1.0, 19.0, 1.0, false, true, 0.0);
        row("now and then", Drift::WhileLively, 4.0, 20.0, 1.0, false, true, 0.0);
        row("where it costs nothing", Drift::Always, 100.0, 0.0, 1.0, false, false, 0.0);
        row("where it is unwanted", Drift::Never, 1.0, 20.0, 0.0, true, true, 20.0);
    }

    void motionRests()
    {
        QFETCH(Drift, drift);
        QFETCH(double, every);
        QFETCH(double, until);
        MotionTime motion;
        double next = 0;
        for (int i = 0; i <= 2000; ++i) {
            const double t = i * 0.01;
            if (t >= next && t <= until) {
                motion.disturb(50 + t);
                next += every;
            }
            motion.advance(50 + t, drift);
        }
        QFETCH(double, pace);
        QVERIFY2(std::abs(motion.pace() - pace) < 0.03, QByteArray::number(motion.pace()));
        QFETCH(double, behind);
        QVERIFY2(std::abs(70 - motion.now() - behind) < 0.05, QByteArray::number(motion.now()));
        QTEST(motion.isAtRest(), "rests");
        QTEST(motion.isLively(), "lively");
    }

    void motionNeverLeaps()
    {
        constexpr double step = 1.0 / 30;
        MotionTime motion;
        double t = 50;
        double shown = 50;
        const auto frame = [&](double passed) {
            t += passed;
            motion.advance(t, Drift::WhileLively);
            const double moved = motion.now() - std::exchange(shown, motion.now());
            return moved >= 0 && moved <= step * 1.0001;
        };
        while (!motion.isAtRest())
            QVERIFY(frame(step));
        // No frame is drawn for an hour; the key that wakes it shows where it stood.
        const double stood = motion.now();
        t += 3600;
        motion.disturb(t);
        QVERIFY(frame(0));
        QCOMPARE(motion.now(), stood);
        int frames = 0;
        for (; motion.pace() < 1; ++frames)
            QVERIFY(frame(step));
        QCOMPARE(frames, 15); // half a second
    }

    void programsThatStandInForAProcessorAreKnown()
    {
        QVERIFY(isSoftwareRenderer("llvmpipe (LLVM 15.0.6, 256 bits)"));
        QVERIFY(isSoftwareRenderer("softpipe"));
        QVERIFY(!isSoftwareRenderer("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
    }
};

QTEST_GUILESS_MAIN(MotionTest)
#include "motion_test.moc"
