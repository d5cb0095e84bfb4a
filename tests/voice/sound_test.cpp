#include "support/table.h"
#include "voice/capture/audio.h"
#include "voice/capture/resampler.h"
#include "voice/recognition/comfort_noise.h"
#include "voice/recognition/noise_suppressor.h"
#include "voice/recognition/sound_queue.h"

#include <QTest>

#include <cmath>
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
