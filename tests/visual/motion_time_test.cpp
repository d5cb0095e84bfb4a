#include "support/table.h"
#include "visual/motion/motion_time.h"

#include <QTest>

using namespace kelo;
using kelo::test::Table;

/// When motion that nothing asks for rests, and how it wakes.
class MotionTimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void restsOnlyWhenNothingHappens_data()
    {
        // every: seconds between disturbances; until: when they end; rests: at 20 s; lively: then
        const Table<double, double, bool, bool> row{"every", "until", "rests", "lively"};
        row("nothing happens", 100.0, 0.0, true, false);
        row("long ago", 1.0, 12.0, true, false);
        row("slowing down", 1.0, 14.5, false, false);
        row("calm", 1.0, 16.0, false, false);
        row("just now", 1.0, 20.0, false, true);
        row("now and then", 4.0, 20.0, false, false);
    }

    void restsOnlyWhenNothingHappens()
    {
        QFETCH(double, every);
        QFETCH(double, until);
        MotionTime motion;
        double next = 50;
        for (double t = 50; t <= 70; t += 0.01) {
            if (t >= next && t <= 50 + until) {
                motion.disturb(t);
                next += every;
            }
            motion.advance(t);
        }
        QTEST(motion.isAtRest(), "rests");
        QTEST(motion.isLively(), "lively");
    }

    void neverLeaps_data()
    {
        // step: seconds from frame to frame
        const Table<double> row{"step"};
        row("120 Hz", 1.0 / 120);
        row("30 Hz", 1.0 / 30);
        row("12 Hz", 1.0 / 12);
    }

    void neverLeaps()
    {
        QFETCH(double, step);
        MotionTime motion;
        double t = 50;
        double shown = 50;
        double pace = 1;
        const auto frame = [&](double passed) {
            t += passed;
            motion.advance(t);
            const double moved = motion.now() - std::exchange(shown, motion.now());
            const double change = motion.pace() - std::exchange(pace, motion.pace());
            return moved >= 0 && moved <= step * 1.0001 && std::abs(change) <= step * 4;
        };
        motion.advance(t);
        while (!motion.isAtRest()) {
            QVERIFY(frame(step));
            QVERIFY(t < 60);
        }
        QVERIFY(t > 56.5 && t < 57.5); // it lingers, then takes about two seconds
        const double stood = motion.now();
        // No frame is drawn for an hour; the key that wakes it shows where it stood.
        t += 3600;
        motion.disturb(t);
        QVERIFY(frame(0));
        QCOMPARE(motion.now(), stood);
        int frames = 0;
        for (; pace < 1; ++frames)
            QVERIFY(frame(step));
        QVERIFY(frames * step < 0.7);
        // From then on it runs with the clock.
        const double behind = t - motion.now();
        for (int i = 0; i < 10; ++i)
            QVERIFY(frame(step));
        QVERIFY(std::abs(t - motion.now() - behind) < 1e-9);
    }
};

QTEST_APPLESS_MAIN(MotionTimeTest)
#include "motion_time_test.moc"
