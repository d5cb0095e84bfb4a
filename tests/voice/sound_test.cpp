#include "support/table.h"
#include "voice/capture/audio.h"
#include "voice/capture/echo_canceller.h"
#include "voice/capture/resampler.h"
#include "voice/recognition/comfort_noise.h"
#include "voice/recognition/noise_suppressor.h"
#include "voice/recognition/sound_queue.h"

#include <QTest>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

using namespace kelo;
using namespace kelo::test;

namespace {

template <typename T> QByteArray bytesOf(std::initializer_list<T> samples)
{
    return {reinterpret_cast<const char *>(samples.begin()),
        static_cast<qsizetype>(samples.size() * sizeof(T))};
}

Samples noise(std::size_t count, double level, std::mt19937 &random)
{
    std::normal_distribution<double> hiss(0, level);
    Samples samples(count);
    for (qint16 &sample : samples)
        sample = static_cast<qint16>(hiss(random));
    return samples;
}

/// A chunk of 100 ms.
Samples chunk(int value)
{
    Samples samples;
    for (int i = 0; i < 1600; ++i)
        samples.push_back(static_cast<qint16>(i % 2 ? -value : value));
    return samples;
}

} // namespace

Q_DECLARE_METATYPE(std::function<int(int)>)

/// From stored samples to what the meter, the queue and the recogniser get of them.
class SoundTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void peaksInEveryFormat()
    {
        using enum AudioFormat::Sample;
        using Stored = std::pair<AudioFormat::Sample, QByteArray>;
        constexpr float nan = std::numeric_limits<float>::quiet_NaN();
        constexpr float inf = std::numeric_limits<float>::infinity();
        const auto peak = [](const Stored &stored) {
            return peakOf({{stored.first, 48000, 2}, stored.second});
        };
        checkRows<Stored, double>(peak,
            {{"nothing", {Int16, {}}, 0}, {"float", {Float32, bytesOf({-0.25F})}, 0.25},
                {"float beyond full scale", {Float32, bytesOf({1.5F})}, 1.5},
                {"not a number", {Float32, bytesOf({nan, 0.F, 0.F, 0.F, 0.F, 0.F, 0.F, 0.F, 0.5F})},
                    0.5},
                {"infinite", {Float32, bytesOf({inf})}, 0},
                {"16 bits, lowest", {Int16, bytesOf<qint16>({-32768})}, 1},
                {"16 bits", {Int16, bytesOf<qint16>({8192})}, 0.25},
                {"32 bits, lowest", {Int32, bytesOf<qint32>({std::numeric_limits<qint32>::min()})},
                    1},
                {"32 bits", {Int32, bytesOf<qint32>({1 << 29})}, 0.25},
                {"every 8th only", {Int16, bytesOf<qint16>({0, 9, 9, 9, 9, 9, 9, 9, 16384, 9})},
                    0.5},
                {"half a sample at the end", {Int16, bytesOf<qint16>({16384}) + "x"}, 0.5},
                {"less than a sample", {Float32, "abc"}, 0},
                {"unknown", {Other, bytesOf<qint16>({32767})}, 0}});
    }

    void mixesToMono()
    {
        using enum AudioFormat::Sample;
        QCOMPARE(monoOf({{Int16, 16000, 2}, bytesOf<qint16>({100, 200, -32768, -32768, 7})}),
            (Samples{150, -32768}));
        QCOMPARE(monoOf({{Float32, 16000, 1}, bytesOf({2.F, -0.5F})}), (Samples{32767, -16384}));
        QCOMPARE(monoOf({{Int32, 16000, 1}, bytesOf<qint32>({1 << 30})}), Samples{16384});
        QCOMPARE(monoOf({{Int16, 16000, 0}, bytesOf<qint16>({5})}), Samples{5});
        QCOMPARE(monoOf({{Other, 16000, 1}, "abcdef"}), Samples{});
    }

    void dropsTheOldestSilenceFirst()
    {
        SoundQueue queue(true);
        double dropped = 0;
        for (int i = 0; i < 5; ++i)
            dropped += queue.push(chunk(0));
        for (int i = 0; i < 15; ++i)
            dropped += queue.push(chunk(1000 + i));
        QCOMPARE(dropped, 0.0);
        for (int i = 0; i < 5; ++i)
            dropped += queue.push(chunk(2000 + i));
        QVERIFY(std::abs(dropped - 0.5) < 1e-9); // the silence went, no speech
        QCOMPARE(queue.pop()->front(), 1000);
        for (int i = 0; i < 1000; ++i)
            dropped += queue.push(chunk(3000));
        QVERIFY(queue.seconds() < 6.1);
        while (queue.pop()) { }
        QVERIFY(queue.empty());
        QVERIFY(std::abs(queue.seconds()) < 1e-6);
    }

    void takesNoiseAwayAndLaysAFloor()
    {
        NoiseSuppressor suppressor;
        std::mt19937 random(1);
        Samples heard;
        for (int i = 0; i < 300; ++i) {
            const Samples cleaned = suppressor.clean(noise(333, 1000, random)); // no whole frames
            heard.insert(heard.end(), cleaned.begin(), cleaned.end());
        }
        QVERIFY(heard.size() > 300 * 333 - 160); // nothing is lost on the way
        QVERIFY(levelOf({heard.end() - 16000, heard.end()}) < 400);
        ComfortNoise tone;
        const double silence = levelOf(tone.under(chunk(0)));
        QVERIFY(silence > 6.5 && silence < 8.5); // 36 dB below the quietest voice
        QVERIFY(
            std::abs(levelOf(tone.under(Samples(1600, 20000))) - silence) < 1); // not by an offset
        (void)tone.under(chunk(10000));
        // Below a loud voice it may be louder, for a while.
        QVERIFY(qAbs(levelOf(tone.under(chunk(0))) - 148) < 5);
        (void)tone.under(Samples(80000));
        QVERIFY(qAbs(levelOf(tone.under(chunk(0))) - 49) < 3);
    }

    /// What is said just after the fan was switched off is heard, and while it runs, hiss is not.
    void aNoiseThatIsGoneIsForgotten()
    {
        NoiseSuppressor suppressor;
        std::mt19937 random(1);
        (void)suppressor.clean(noise(5 * 16000, 1000, random));
        (void)suppressor.clean(noise(1280, 700, random)); // a little less is no other room
        QVERIFY(levelOf(suppressor.clean(noise(8000, 1000, random))) < 300);
        (void)suppressor.clean(noise(4800, 5, random));
        const double spoken = levelOf(suppressor.clean(noise(8000, 300, random)));
        QVERIFY2(spoken > 150, qPrintable(QString::number(spoken)));
    }

    /// What comes back of a loudspeaker 80 ms later and half as loud, after some seconds, and of a
    /// tone that somebody whistles meanwhile; in per cent of each.
    void takesWhatIsPlayedFromWhatIsHeard_data()
    {
        QTest::addColumn<std::function<int(int)>>("played"); // pieces of 20 ms until this one
        QTest::newRow("evenly") << std::function([](int now) { return now + 1; });
        QTest::newRow("a little late") << std::function([](int now) { return now; });
        QTest::newRow("in heaps") << std::function([](int now) { return now / 4 * 4 + 1; });
        QTest::newRow("in large heaps, ahead")
            << std::function([](int now) { return now / 15 * 15 + 15; });
        QTest::newRow("begun earlier") << std::function([](int now) { return now + 4; });
        QTest::newRow("late from the fifth second on")
            << std::function([](int now) { return now < 250 ? now + 1 : now - 3; });
    }

    void takesWhatIsPlayedFromWhatIsHeard()
    {
        QFETCH(std::function<int(int)>, played);
        constexpr int pieces = 600;
        std::mt19937 random(4);
        const Samples sound = noise((pieces + 8) * 320, 3000, random);
        EchoCanceller canceller;
        Samples cleaned;
        int told = 0;
        const auto hear = [&](int from, int to) {
            for (int piece = from; piece < to; ++piece) {
                for (; told < played(piece); ++told)
                    canceller.play({sound.begin() + told * 320, sound.begin() + (told + 1) * 320});
                Samples heard(320);
                for (int i = 0; i < 320; ++i) {
                    const int at = piece * 320 + i;
                    const double whistle = at > 500 * 320 ? 1500 * std::sin(0.3 * at) : 0;
                    const double echo =
                        at >= 1280 ? sound[static_cast<std::size_t>(at - 1280)] / 2. : 0;
                    heard[static_cast<std::size_t>(i)] = static_cast<qint16>(echo + whistle);
                }
                const Samples some = canceller.hear(heard);
                cleaned.insert(cleaned.end(), some.begin(), some.end());
            }
        };
        hear(0, 490);
        const double left = levelOf({cleaned.end() - 16000, cleaned.end()});
        QVERIFY2(left < 0.1 * 1500, qPrintable(QString::number(left)));
        hear(490, pieces);
        QVERIFY(cleaned.size() >= (pieces - 8) * 320);
        const double whistled = levelOf({cleaned.end() - 16000, cleaned.end()});
        QVERIFY2(whistled > 700 && whistled < 1300, qPrintable(QString::number(whistled)));
    }

    void leavesAsItIsWhatNothingIsPlayedOver()
    {
        std::mt19937 random(4);
        const Samples speech = noise(32000, 500, random);
        EchoCanceller canceller;
        Samples cleaned;
        for (int silent : {0, 1}) { // nothing comes, or silence does
            if (silent)
                canceller.play(Samples(1600));
            const Samples some = canceller.hear(speech);
            cleaned.insert(cleaned.end(), some.begin(), some.end());
        }
        Samples twice = speech;
        twice.insert(twice.end(), speech.begin(), speech.end());
        QVERIFY(cleaned.size() > 62000);
        twice.resize(cleaned.size());
        QCOMPARE(cleaned, twice);
    }

    void resamplesPieceByPiece()
    {
        Samples tone;
        for (int i = 0; i < 48000; ++i)
            tone.push_back(static_cast<qint16>(10000 * std::sin(i * 0.0576))); // 440 Hz
        const Samples whole = Resampler(48000).finish(tone);
        QVERIFY(whole.size() >= 16000 && whole.size() < 16010);
        for (std::size_t i = 100; i < 15900; ++i)
            QVERIFY(std::abs(whole[i] - 10000 * std::sin(static_cast<double>(i) * 0.1728)) < 100);
        Resampler resampler(48000);
        Samples pieces;
        for (std::size_t at = 0, size = 1; at < tone.size(); at += size, size = size * 7 % 1999) {
            const auto begin = tone.begin() + static_cast<std::ptrdiff_t>(at);
            const auto count = static_cast<std::ptrdiff_t>(std::min(size, tone.size() - at));
            const Samples piece = resampler.add({begin, begin + count});
            pieces.insert(pieces.end(), piece.begin(), piece.end());
        }
        QVERIFY(pieces.size() > 15900);
        QVERIFY(std::equal(pieces.begin(), pieces.end(), whole.begin()));
    }
};

QTEST_APPLESS_MAIN(SoundTest)
#include "sound_test.moc"
