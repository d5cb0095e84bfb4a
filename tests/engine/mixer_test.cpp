#include "sound/mixer.h"

#include <QTest>

#include <random>
#include <thread>

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

    void aFullQueueSaysSo()
    {
        Bench bench;
        int taken = 0;
        while (taken < 100000 && bench.mixer.music().play(1 << 20, {0x90, 60, 1}))
            ++taken;
        QVERIFY(taken >= 1000 && taken < 100000);
        bench.render(2);
        bench.mixer.music().silence();
        bench.render(2);
        QVERIFY(bench.mixer.music().play(1 << 20, {0x90, 60, 1}));
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
