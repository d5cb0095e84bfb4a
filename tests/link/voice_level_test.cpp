#include "link/voice_level.h"
#include "link/voice_spectrum.h"
#include "support/table.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace kelo;
using kelo::test::Table;

namespace {

constexpr Liveliness offline{true, false, false, 0, 0};

bool near(double a, double b)
{
    return std::abs(a - b) < 1e-6;
}

/// Bars after so many steps at second 10 that they stand at their target.
Bars settled(const std::optional<VoiceFrame> &bands, const Liveliness &life,
    std::span<const Ripple> ripples = {})
{
    Bars bars{};
    for (int step = 0; step < 100; ++step)
        updateBars(bars, bands, life, ripples, 10, 0.1);
    return bars;
}

} // namespace

class VoiceLevelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bandsFollowTheStream_data()
    {
        // frame: since second 100; band: of ten frames 0, 1 ... 9
        const Table<std::optional<double>, double, double, std::optional<double>> row{
            "anchor", "start", "frame", "band"};
        row("nothing says when", std::nullopt, 0, 3, std::nullopt);
        row("an anchor that is no time", 0, 100, 3, std::nullopt);
        row("before the first frame", 100, 0, -0.1, std::nullopt);
        row("between two frames", 100, 0, 2.5, 2.5);
        row("the last frame holds", 100, 0, 9.5, 9);
        row("run out", 100, 0, 10.1, std::nullopt);
        row("40 ms after the start line", std::nullopt, 100, 2.4 + 3.25, 3.25);
        row("the anchor outweighs it", 100, 50, 0.5, 0.5);
        row("far in the future", 100, 0, 1e300, std::nullopt);
    }

    void bandsFollowTheStream()
    {
        QFETCH(std::optional<double>, anchor);
        QFETCH(double, start);
        QFETCH(double, frame);
        QFETCH(std::optional<double>, band);
        std::vector<VoiceFrame> frames(10);
        for (std::size_t i = 0; i < frames.size(); ++i)
            frames[i].fill(static_cast<double>(i));
        const auto bands = VoiceSpectrum{1, frames, anchor, start}.bandsAt(100 + frame / 60);
        QCOMPARE(bands.has_value(), band.has_value());
        QVERIFY(!band || (near(bands->front(), *band) && near(bands->back(), *band)));
    }

    void theLevelRisesFastAndFallsSlowly()
    {
        const Liveliness silent{false, false, false, 0, -1000};
        const Liveliness word{false, true, false, 10, 0};
        QCOMPARE(easedLevel(0.5, offline, 10, 0.01), 0.5 + (0.02 - 0.5) * 0.05);
        // At the beginning of a word the target is 0.36 + 0.42 + half of 0.2.
        QCOMPARE(easedLevel(0, word, 10, 0.01), 0.88 * 0.16);
        QCOMPARE(easedLevel(0, word, 10, 5), 0.88);
        for (const double step : {0.0, -5.0})
            QCOMPARE(easedLevel(0.3, silent, 0, step), 0.3);
        QCOMPARE(easedLevel(0.3, silent, 0, 60), 0.3 + (0.05 - 0.3) * 0.5);
    }

    void barsShowWhatThereIs()
    {
        VoiceFrame rising{};
        for (std::size_t i = 0; i < rising.size(); ++i)
            rising[i] = static_cast<double>(i) - 1;
        const Liveliness speaking{false, true, false, 9, 0};
        const Liveliness withSpectrum{false, true, true, 9, 0};
        const Bars spoken = settled(rising, withSpectrum);
        QCOMPARE(spoken.front(), 0.0); // a band below zero counts as none
        QCOMPARE(spoken.back(), 0.0);
        QVERIFY(near(spoken[59], std::pow(14, 1.5) * (0.9 + 0.1 * std::sin(90 + 1.7 * 59))));
        QVERIFY(near(spoken[60], std::pow(14, 1.5) * (0.9 + 0.1 * std::sin(90 + 1.7 * 60))));

        const Bars idle = settled({}, {});
        QCOMPARE(settled({}, withSpectrum), idle); // a spectrum that ran out
        QVERIFY(std::ranges::max(idle) <= 0.065);
        QVERIFY(std::ranges::min(settled({}, speaking)) > 0.1);
        QCOMPARE(settled({}, offline), Bars{});
    }

    void aKeyRaisesItsBars()
    {
        constexpr double height = (0.35 + 0.65 * 0.5);
        for (const auto &[pitch, bar] : {std::pair<qint64, int>{21, 0}, {60, 26}, {108, 59}}) {
            const Ripple ripple{pitch, 10, 0.5, std::nullopt};
            const Bars bars = settled({}, offline, {&ripple, 1});
            const auto highest = std::max_element(bars.begin(), bars.begin() + 60);
            QCOMPARE(std::distance(bars.begin(), highest), bar);
            QVERIFY(near(*highest, height));
            QVERIFY(bar < 3 || near(*(highest - 3), height * std::exp(-1.5)));
            QVERIFY(std::equal(bars.begin(), bars.begin() + 60, bars.rbegin()));
        }
        using Limits = std::numeric_limits<qint64>;
        for (const Ripple &unseen : {Ripple{60, 10.1, 1, {}}, Ripple{60, 8.7, 1, {}},
                 Ripple{Limits::max(), 10, 1, {}}, Ripple{Limits::min(), 10, 1, {}}})
            QCOMPARE(settled({}, offline, {&unseen, 1}), Bars{});
    }

    void aStalledDisplayDoesNotLeap()
    {
        Bars bars{};
        bars.fill(1);
        updateBars(bars, std::nullopt, offline, {}, 10, 60);
        QCOMPARE(bars[0], 1 - 0.9);
        bars.fill(1);
        updateBars(bars, std::nullopt, offline, {}, 10, 0);
        QCOMPARE(bars[0], 1 - 0.009);
        QCOMPARE(levelOf(bars), 1.0);

        QCOMPARE(spinStep(0.58, 60), 0.1 * 1.6 * 0.5);
        QCOMPARE(spinStep(0.58, -1), 0.0);
        QCOMPARE(spinStep(0.01, 0.05), 0.0);
    }
};

QTEST_GUILESS_MAIN(VoiceLevelTest)
#include "voice_level_test.moc"
