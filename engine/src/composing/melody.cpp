#include "composing/melody.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace kelo::engine {

namespace {

constexpr int highest = 11; ///< degrees above the tonic at middle C
constexpr int lowest = -2;
constexpr int periodBars = 8;

/// Rhythms of a bar, in eighths.
using Rhythm = std::vector<int>;

const std::vector<Rhythm> &rhythms(int eighths, bool lively)
{
    static const std::vector<Rhythm> calmFour{{2, 2, 2, 2}, {4, 2, 2}, {3, 1, 4}, {2, 2, 4}};
    static const std::vector<Rhythm> livelyFour{
        {2, 1, 1, 2, 2}, {1, 1, 2, 1, 1, 2}, {3, 1, 2, 2}, {2, 2, 1, 1, 2}};
    static const std::vector<Rhythm> calmThree{{2, 2, 2}, {4, 2}, {3, 1, 2}};
    static const std::vector<Rhythm> livelyThree{{2, 1, 1, 2}, {1, 1, 2, 2}, {3, 1, 2}};
    if (eighths == 6)
        return lively ? livelyThree : calmThree;
    return lively ? livelyFour : calmFour;
}

bool belongs(int degree, int chord)
{
    const int above = ((degree - chord) % 7 + 7) % 7;
    return above == 0 || above == 2 || above == 4;
}

/// The nearest degree to `wanted` that belongs to the chord.
int snapped(int wanted, int chord)
{
    for (int away = 0; away < 4; ++away) {
        for (const int degree : {wanted + away, wanted - away}) {
            if (belongs(degree, chord) && degree <= highest && degree >= lowest)
                return degree;
        }
    }
    return chord;
}

} // namespace

int pitchOver(const Tonality &key, int degree, int chord)
{
    const bool leading = key.minor && chord == 4 && (degree % 7 + 7) % 7 == 6;
    return pitchOf(key, degree) + (leading ? 1 : 0);
}

std::vector<DegreeTone> periodOver(std::span<const int> chords, const Metre &metre, bool lively,
    bool opens, std::minstd_rand &random)
{
    constexpr int eighth = ticksPerQuarter / 2;
    const int eighths = static_cast<int>(quartersIn(metre) * 2);
    const auto &kinds = rhythms(eighths, lively);
    const auto choose = [&](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    const Rhythm &first = kinds[static_cast<std::size_t>(choose(static_cast<int>(kinds.size())))];
    const Rhythm &second = kinds[static_cast<std::size_t>(choose(static_cast<int>(kinds.size())))];
    // Where each bar begins: an arch that has its top in the sixth bar.
    constexpr std::array<int, periodBars> arch{2, 3, 4, 3, 4, 6, 5, 2};
    std::array<int, periodBars> anchors{};
    for (std::size_t bar = 0; bar < periodBars; ++bar)
        anchors[bar] = snapped(arch[bar] + choose(3) - 1, chords[bar]);
    anchors[4] = anchors[0]; // the motif comes back
    std::vector<DegreeTone> tones;
    std::vector<DegreeTone> motif; ///< of the first bar
    for (std::size_t bar = 0; bar < periodBars; ++bar) {
        const int start = static_cast<int>(bar) * eighths * eighth;
        const int chord = chords[bar];
        if (bar % 4 == 3) { // a close
            constexpr int rest = 2;
            const int end = snapped(bar == 7 && !opens ? 0 : anchors[bar], chord);
            tones.push_back({start, (eighths - rest) * eighth, end});
            continue;
        }
        if (bar == 4 && chord == chords[0]) {
            for (const DegreeTone &tone : motif)
                tones.push_back({start + tone.at, tone.length, tone.degree});
            continue;
        }
        int at = 0;
        for (const int length : bar % 2 == 0 ? first : second) {
            const double way = static_cast<double>(at) / eighths;
            const int straight = static_cast<int>(
                std::lround(anchors[bar] + way * (anchors[bar + 1] - anchors[bar])));
            const bool strong = at % 4 == 0;
            int degree = strong ? snapped(straight, chord) : straight;
            if (!strong && !tones.empty() && tones.back().degree == degree)
                degree += choose(2) == 0 ? 1 : -1; // a neighbour rather than the same again
            if (!tones.empty() && std::abs(degree - tones.back().degree) > 4)
                degree = snapped((degree + tones.back().degree) / 2, chord);
            tones.push_back(
                {start + at * eighth, length * eighth, std::clamp(degree, lowest, highest)});
            at += length;
        }
        if (bar == 0)
            motif = tones;
    }
    return tones;
}

} // namespace kelo::engine
