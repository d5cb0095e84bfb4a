#include "link/voice_bands.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace kelo;

class VoiceBandsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bandsFollowTheStream_data();
    void bandsFollowTheStream();
    void theLevelRisesFastAndFallsSlowly();
    void barsAreMirrored();
    void barsShowWhatThereIs_data();
    void barsShowWhatThereIs();
    void aKeyRaisesItsBars_data();
    void aKeyRaisesItsBars();
    void aStalledDisplayDoesNotLeap();
};

namespace {

VoiceFrame flat(double value)
{
    VoiceFrame frame{};
    frame.fill(value);
    return frame;
}

/// Bars after so many steps that they stand at their target.
Bars settled(const std::optional<VoiceFrame> &bands, const Liveliness &life,
    std::span<const Ripple> ripples, double now)
{
    Bars bars{};
    for (int step = 0; step < 100; ++step)
        updateBars(bars, bands, life, ripples, now, 0.1);
    return bars;
}

constexpr Liveliness offline{true, false, false, 0, 0};

} // namespace

void VoiceBandsTest::bandsFollowTheStream_data()
{
    QTest::addColumn<bool>("speaking");
    QTest::addColumn<std::optional<double>>("anchor");
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("now");
    QTest::addColumn<std::optional<double>>("band");
    const auto row = [](const char *why, bool speaking, std::optional<double> anchor, double start,
                         double now, std::optional<double> band) {
        QTest::newRow(why) << speaking << anchor << start << now << band;
    };
    // Ten frames: 0, 1 ... 9
    row("silent", false, 100, 0, 100.05, std::nullopt);
    row("nothing says when", true, std::nullopt, 0, 100, std::nullopt);
    row("an anchor that is no time", true, 0, 100, 100.05, std::nullopt);
    row("before the first frame", true, 100, 0, 99.999, std::nullopt);
    row("between two frames", true, 100, 0, 100 + 2.5 / 60, 2.5);
    row("the last frame holds", true, 100, 0, 100 + 9.5 / 60, 9);
    row("run out", true, 100, 0, 100 + 10.01 / 60, std::nullopt);
    row("from the start line", true, std::nullopt, 100, 100.04 + 3.25 / 60, 3.25);
    row("the anchor outweighs it", true, 100, 50, 100 + 1.0 / 120, 0.5);
    row("far in the future", true, 100, 0, 1e300, std::nullopt);
}

void VoiceBandsTest::bandsFollowTheStream()
{
    QFETCH(bool, speaking);
    QFETCH(std::optional<double>, anchor);
    QFETCH(double, start);
    QFETCH(double, now);
    QFETCH(std::optional<double>, band);
    std::vector<VoiceFrame> frames;
    for (int i = 0; i < 10; ++i)
        frames.push_back(flat(i));
    const auto bands = voiceBands({speaking, frames, anchor, start}, now);
    QCOMPARE(bands.has_value(), band.has_value());
    for (int i = 0; band && i < voiceBandCount; ++i)
        QVERIFY(std::abs((*bands)[static_cast<std::size_t>(i)] - *band) < 1e-6);
    QVERIFY(!voiceBands({true, {}, 100, 0}, 100));
}

void VoiceBandsTest::theLevelRisesFastAndFallsSlowly()
{
    const Liveliness silent{false, false, false, 0, -1000};
    const Liveliness word{false, true, false, 10, 0};
    QCOMPARE(easedLevel(0.5, offline, 10, 0.01), 0.5 + (0.02 - 0.5) * 0.05);
    QCOMPARE(easedLevel(0.02, offline, 10, 10), 0.02);
    // At the beginning of a word the target is 0.36 + 0.42 + half of 0.2.
    QCOMPARE(easedLevel(0, word, 10, 0.01), 0.88 * 0.16);
    QCOMPARE(easedLevel(0, word, 10, 5), 0.88);
    QCOMPARE(easedLevel(0.3, silent, 0, 0), 0.3);
    QCOMPARE(easedLevel(0.3, silent, 0, -5), 0.3);
    QCOMPARE(easedLevel(0.3, silent, 0, 60), 0.3 + (0.05 - 0.3) * 0.5);
}

void VoiceBandsTest::barsAreMirrored()
{
    const Ripple key{40, 9.5, 0.7, std::nullopt};
    for (const Liveliness &life : {Liveliness{}, offline}) {
        Bars bars{};
        updateBars(bars, std::nullopt, life, {&key, 1}, 10, 0.05);
        if (life.offline)
            QVERIFY(std::equal(bars.begin(), bars.begin() + 60, bars.rbegin()));
        QVERIFY(*std::ranges::max_element(bars) > 0.05);
    }
}

void VoiceBandsTest::barsShowWhatThereIs_data()
{
    QTest::addColumn<std::optional<VoiceFrame>>("bands");
    QTest::addColumn<Liveliness>("life");
    QTest::addColumn<int>("bar");
    QTest::addColumn<double>("height");
    VoiceFrame rising{};
    for (std::size_t i = 0; i < rising.size(); ++i)
        rising[i] = static_cast<double>(i);
    const Liveliness speaking{false, true, false, 9, 0};
    const Liveliness withSpectrum{false, true, true, 9, 0};
    const auto wave = [](double value, int i) {
        return std::pow(value, 1.5) * (0.9 + 0.1 * std::sin(90 + 1.7 * i));
    };
    const auto idle = [](int i) {
        return 0.035 + 0.03 * std::sin(16 + 0.21 * i) * std::sin(0.05 * i - 7);
    };
    const auto guess = [](int i) {
        return (0.25 + 0.4 * std::exp(-3))
            * (0.5 + 0.5 * std::abs(std::sin(80 + 0.37 * i) * std::sin(0.11 * i - 50)));
    };
    using Bands = std::optional<VoiceFrame>;
    QTest::newRow("lowest band outside") << Bands(rising) << withSpectrum << 0 << wave(0, 0);
    QTest::newRow("highest inside") << Bands(rising) << withSpectrum << 59 << wave(15, 59);
    QTest::newRow("mirrored") << Bands(rising) << withSpectrum << 60 << wave(15, 60);
    QTest::newRow("between bands")
        << Bands(rising) << withSpectrum << 10 << wave(10.0 / 59 * 15, 10);
    QTest::newRow("a negative band counts as none")
        << Bands(flat(-1)) << withSpectrum << 5 << wave(0, 5);
    QTest::newRow("no spectrum: guessed") << Bands() << speaking << 33 << guess(33);
    QTest::newRow("spectrum ran out: idle") << Bands() << withSpectrum << 33 << idle(33);
    QTest::newRow("silent: idle") << Bands() << Liveliness{} << 77 << idle(77);
    QTest::newRow("offline: still") << Bands() << offline << 77 << 0.0;
}

void VoiceBandsTest::barsShowWhatThereIs()
{
    QFETCH(std::optional<VoiceFrame>, bands);
    QFETCH(Liveliness, life);
    QFETCH(int, bar);
    QFETCH(double, height);
    const Bars bars = settled(bands, life, {}, 10);
    QVERIFY(std::abs(bars[static_cast<std::size_t>(bar)] - height) < 1e-6);
}

void VoiceBandsTest::aKeyRaisesItsBars_data()
{
    QTest::addColumn<qint64>("pitch");
    QTest::addColumn<double>("age");
    QTest::addColumn<int>("peak"); // -1: none
    QTest::newRow("lowest key") << qint64(21) << 0.1 << 0;
    QTest::newRow("highest key") << qint64(108) << 0.1 << 59;
    QTest::newRow("middle") << qint64(60) << 0.1 << 26;
    QTest::newRow("not yet") << qint64(60) << -0.1 << -1;
    QTest::newRow("faded") << qint64(60) << 1.3 << -1;
    QTest::newRow("far above") << std::numeric_limits<qint64>::max() << 0.1 << -1;
    QTest::newRow("far below") << std::numeric_limits<qint64>::min() << 0.1 << -1;
}

void VoiceBandsTest::aKeyRaisesItsBars()
{
    QFETCH(qint64, pitch);
    QFETCH(double, age);
    QFETCH(int, peak);
    const Ripple ripple{pitch, 10 - age, 0.5, std::nullopt};
    const Bars bars = settled(std::nullopt, offline, {&ripple, 1}, 10);
    const auto highest = std::max_element(bars.begin(), bars.begin() + 60);
    if (peak < 0) {
        QCOMPARE(*highest, 0.0);
        return;
    }
    QCOMPARE(std::distance(bars.begin(), highest), peak);
    const double height = (0.35 + 0.65 * 0.5) * std::exp(-3.5 * age);
    QVERIFY(std::abs(*highest - height) < 1e-6);
    if (peak >= 3) {
        const double beside = bars[static_cast<std::size_t>(peak) - 3];
        QVERIFY(std::abs(beside - height * std::exp(-1.5)) < 1e-6);
    }
    QVERIFY(std::equal(bars.begin(), bars.begin() + 60, bars.rbegin()));
}

void VoiceBandsTest::aStalledDisplayDoesNotLeap()
{
    Bars bars{};
    bars.fill(1);
    updateBars(bars, std::nullopt, offline, {}, 10, 60);
    QCOMPARE(bars[0], 1 - 0.9);
    bars.fill(1);
    updateBars(bars, std::nullopt, offline, {}, 10, 0);
    QCOMPARE(bars[0], 1 - 0.009);
    QCOMPARE(levelOf(bars), 1.0);
    bars.fill(0.1);
    QVERIFY(std::abs(levelOf(bars) - 0.22) < 1e-9);

    QCOMPARE(spinStep(0.58, 0.05), 0.05 * 1.6 * 0.5);
    QCOMPARE(spinStep(0.58, 60), 0.1 * 1.6 * 0.5);
    QCOMPARE(spinStep(0.58, -1), 0.0);
    QCOMPARE(spinStep(0.01, 0.05), 0.0);
}

QTEST_GUILESS_MAIN(VoiceBandsTest)
#include "voice_bands_test.moc"
