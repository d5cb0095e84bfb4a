#include "sound/mixer.h"
#include "sums.h"

#include <QTest>

#include <random>
#include <thread>

using namespace Qt::StringLiterals;
using namespace kelo::engine;

namespace {

constexpr std::size_t period = 256;
constexpr std::ptrdiff_t delay = Limiter::lookAhead; ///< of everything

/// A mixer without instruments, rendered a period at a time.
struct Bench {
    AudioClock clock{0};
    Mixer mixer{std::make_unique<Synth>(std::span<const std::string>{}), clock};
    Frame position = 0;

    std::vector<float> render(int count)
    {
        std::vector<float> all;
        for (int i = 0; i < count; ++i) {
            std::vector<float> left(period, 9.0F);
            std::vector<float> right(period, 9.0F);
            mixer.render(left, right, seconds(position));
            position += period;
            all.insert(all.end(), left.begin(), left.end());
        }
        return all;
    }
    void say(std::uint32_t utterance, Frame from, int blocks)
    {
        const std::vector<float> halves(SpeechOutput::blockSize, 0.5F);
        for (int i = 0; i < blocks; ++i)
            QVERIFY(mixer.speak(
                utterance, from + i * static_cast<Frame>(SpeechOutput::blockSize), halves));
    }
};

std::ptrdiff_t firstSound(const std::vector<float> &samples)
{
    return std::find_if(samples.begin(), samples.end(), [](float s) { return s != 0; })
        - samples.begin();
}

} // namespace

class MixerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theVoiceSoundsAtItsFrame()
    {
        Bench bench;
        bench.mixer.listenTo(1);
        bench.say(1, 1000, 2);
        const auto heard = bench.render(8);
        QCOMPARE(firstSound(heard), 1000 + delay);
        QCOMPARE(std::count(heard.begin(), heard.end(), 0.5F), 512);
    }

    void aLateVoiceKeepsItsPlaceInTime()
    {
        Bench bench;
        bench.mixer.listenTo(1);
        bench.render(2);
        bench.say(1, 300, 2); // 212 samples of it are past
        const auto heard = bench.render(4);
        QCOMPARE(std::count(heard.begin(), heard.end(), 0.5F), 300);
    }

    void aVoiceThatIsCutOffFadesAndTheNextOneFollows()
    {
        Bench bench;
        bench.mixer.listenTo(1);
        bench.say(1, 0, 20);
        bench.render(2);
        bench.mixer.listenTo(2);
        bench.say(2, 2048, 1);
        const auto heard = bench.render(10);
        QCOMPARE(heard[delay - 1], 0.5F);
        for (std::size_t i = 1; i < 200 + delay; ++i)
            QVERIFY(heard[i - 1] - heard[i] < 0.01F && heard[i] <= 0.5F);
        QCOMPARE(heard[200 + delay], 0.0F);
        QCOMPARE(heard[2048 - 512 + delay], 0.5F);
        QCOMPARE(std::count(heard.begin() + 300, heard.end(), 0.5F), 256);
        bench.mixer.listenTo(0);
        QCOMPARE(firstSound(bench.render(4)), 1024);
    }

    void afterAnOutageNothingIsLate()
    {
        Bench bench;
        bench.mixer.listenTo(1);
        bench.render(1);
        constexpr Frame lost = 100 * static_cast<Frame>(period);
        bench.say(1, period, 4); // swallowed
        bench.say(1, lost + 2 * static_cast<Frame>(period), 1);
        bench.position += 2 * lost; // nobody asked for sound
        bench.say(1, bench.position + 300, 1);
        QCOMPARE(firstSound(bench.render(4)), 300 + delay);
        QVERIFY(std::abs(bench.clock.timeOf(bench.position) - seconds(bench.position)) < 0.01);
    }

    void turnsDownAndUpAgainAtThePaceOfEars()
    {
        QString limited; // a quiet tone, with a burst in it that is far too loud
        Limiter limiter;
        for (int block = 0; block < 40; ++block) {
            std::vector<float> left(128);
            for (std::size_t i = 0; i < left.size(); ++i)
                left[i] = (block == 5 && i > 30 ? 3.0F : 0.5F) * (i % 2 == 0 ? 1.0F : -0.8F);
            std::vector<float> right(128, block == 9 ? -1.5F : 0.1F);
            limiter.process(left, right);
            for (const std::size_t at : {0U, 20U, 90U})
                limited += QString::number(left[at], 'f', 3) + u'/'
                    + QString::number(right[at], 'f', 3) + u' ';
        }
        QCOMPARE(unlikeKept(u"limiter"_s, {qChecksum(limited.toUtf8())}), QString());

        QString ducked; // speech from 0.1 to 0.4 s
        Ducker ducker;
        for (int block = 0; block < 300; ++block) {
            const float gain = ducker.next(period, block >= 17 && block < 69);
            if (block % 12 == 0 || block == 18)
                ducked += QString::number(gain, 'f', 3) + u' ';
        }
        QCOMPARE(ducked,
            u"1.000 1.000 0.807 0.528 0.413 0.401 0.400 0.400 0.400 0.400 0.400 0.400 0.445 0.560 "
            "0.651 0.723 0.781 0.826 0.862 0.891 0.913 0.931 0.946 0.957 0.966 0.973 "_s);

        QString ticked; // a clock that runs late, then is left behind
        AudioClock clock(100);
        clock.setLatency(0.02);
        for (int block = 1; block < 30; ++block) {
            clock.tick(block * 256,
                100 + block * 0.006 + (block > 15 ? 0.05 : 0) + (block > 25 ? 0.2 : 0));
            ticked += QString::number(clock.timeOf(block * 256) - 100, 'f', 4) + u'/'
                + QString::number(clock.frameRenderedAt(100.5)) + u' ';
        }
        QCOMPARE(ticked.section(u' ', 13, 16),
            u"0.1022/22009 0.1081/22004 0.1165/21889 0.1248/21780"_s); // it gives way little by
                                                                       // little
        QCOMPARE(unlikeKept(u"clock"_s, {qChecksum(ticked.toUtf8())}), QString());
    }

    void aFullQueueSaysSo()
    {
        Bench bench;
        const auto fill = [&] {
            int taken = 0;
            while (taken < 100000 && bench.mixer.music().play(1 << 20, {0x90, 60, 1}))
                ++taken;
            bench.render(2);
            return taken;
        };
        QCOMPARE(fill(), 4096);
        QCOMPARE(fill(), 4096); // as many wait behind the queue
        QCOMPARE(fill(), 0);
        bench.mixer.music().silence();
        bench.render(2);
        QCOMPARE(fill(), 4096);
    }

    void theClockSmoothsJitterAndFollowsGaps()
    {
        std::mt19937 random(3);
        std::uniform_real_distribution<double> late(0, 0.01);
        AudioClock clock(100);
        clock.setLatency(0.02);
        Frame frame = 0;
        double now = 100;
        const auto tick = [&](int count, double drift) {
            for (int i = 0; i < count; ++i) {
                now += seconds(period) * drift;
                clock.tick(frame += period, now + late(random));
            }
        };
        tick(1000, 1.0001); // a sound card that is slow by 100 millionths
        QVERIFY(std::abs(clock.timeOf(frame) - (now + 0.005 + 0.02)) < 0.004);
        QVERIFY(std::abs(clock.frameAt(clock.timeOf(frame + 12345)) - (frame + 12345)) <= 1);
        now += 5; // the machine slept
        tick(1, 1);
        QVERIFY(std::abs(clock.timeOf(frame) - now - 0.02) < 0.011);
    }

    void theClockNeverShowsHalfAnAnchor()
    {
        AudioClock clock(0);
        std::atomic<bool> over = false;
        std::thread audio([&] {
            for (Frame frame = 0; frame < 20'000'000; frame += 100)
                clock.tick(frame, seconds(frame));
            over = true;
        });
        int wrong = 0;
        while (!over)
            wrong += std::abs(clock.timeOf(44100) - 1.0) > 1e-6;
        audio.join();
        QCOMPARE(wrong, 0);
    }
};

QTEST_APPLESS_MAIN(MixerTest)
#include "mixer_test.moc"
