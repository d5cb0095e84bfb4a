#include "link/voice_level.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kelo {

namespace {

constexpr double longestStep = 0.1; // seconds; a stalled display does not leap
constexpr double shortestStep = 0.001;

constexpr int halfRow = barCount / 2;
constexpr double lowestKey = 21;
constexpr double keySpan = 87; // semitones from the lowest key to the highest
constexpr double rippleLife = 1.2; // seconds
constexpr int rippleReach = 5; // bars to each side

double mix(double a, double b, double t)
{
    return (1 - t) * a + t * b;
}

Bars spokenTarget(const VoiceFrame &bands, double now)
{
    Bars target{};
    for (int i = 0; i < barCount; ++i) {
        const int mirrored = i < halfRow ? i : barCount - 1 - i;
        const double x = static_cast<double>(mirrored) / (halfRow - 1) * (voiceBandCount - 1);
        const auto low = static_cast<std::size_t>(x);
        const std::size_t high = std::min<std::size_t>(low + 1, voiceBandCount - 1);
        const double value = mix(bands[low], bands[high], x - static_cast<double>(low));
        target[static_cast<std::size_t>(i)] =
            std::pow(std::max(value, 0.0), 1.5) * (0.9 + 0.1 * std::sin(9 * now + 1.7 * i));
    }
    return target;
}

Bars guessedTarget(double now, double wordAt)
{
    const double amplitude = 0.25 + 0.4 * std::exp(-3 * (now - wordAt));
    Bars target{};
    for (int i = 0; i < barCount; ++i) {
        target[static_cast<std::size_t>(i)] = amplitude
            * (0.5 + 0.5 * std::abs(std::sin(8 * now + 0.37 * i) * std::sin(0.11 * i - 5 * now)));
    }
    return target;
}

Bars idleTarget(double now)
{
    Bars target{};
    for (int i = 0; i < barCount; ++i) {
        target[static_cast<std::size_t>(i)] =
            0.035 + 0.03 * std::sin(1.6 * now + 0.21 * i) * std::sin(0.05 * i - 0.7 * now);
    }
    return target;
}

void raiseForRipple(Bars &target, const Ripple &ripple, double now)
{
    const double age = now - ripple.at;
    if (age < 0 || age > rippleLife)
        return;
    const double place = (static_cast<double>(ripple.pitch) - lowestKey) / keySpan * (halfRow - 1);
    if (std::abs(place) > barCount)
        return; // far off the keyboard: no bar is within reach
    const int centre = static_cast<int>(place);
    const double decay = std::exp(-3.5 * age);
    for (int d = -rippleReach; d <= rippleReach; ++d) {
        const int bar = centre + d;
        if (bar < 0 || bar >= halfRow)
            continue;
        const double value = (0.35 + 0.65 * ripple.strength) * decay * std::exp(-d * d / 6.0);
        for (const int side : {bar, barCount - 1 - bar}) {
            double &height = target[static_cast<std::size_t>(side)];
            height = std::max(height, value);
        }
    }
}

} // namespace

double easedLevel(double level, const Liveliness &life, double now, double dt)
{
    double target = 0.02;
    if (!life.offline && life.speaking) {
        // A burst at each word that settles, with a flutter of 21 rad/s on top.
        const double e = now - life.wordAt;
        target = 0.36 + 0.42 * std::exp(-2.6 * e)
            + 0.2 * std::exp(-1.2 * e) * (0.5 * std::sin(21 * e) + 0.5);
    } else if (!life.offline) {
        // Slow breathing, and a kick at each pulse that dies away.
        target = 0.05 + 0.025 * std::sin(1.3 * now) + 0.55 * std::exp(-2.8 * (now - life.pulseAt));
    }
    const double rate = target > level ? 16.0 : 5.0;
    const double eased = std::min(std::clamp(dt, 0.0, longestStep) * rate, 1.0);
    return level + (target - level) * eased;
}

void updateBars(Bars &bars, const std::optional<VoiceFrame> &bands, const Liveliness &life,
    std::span<const Ripple> newestRipples, double now, double dt)
{
    Bars target{};
    if (bands)
        target = spokenTarget(*bands, now);
    else if (life.speaking && !life.spectrumKnown)
        target = guessedTarget(now, life.wordAt);
    else if (!life.offline)
        target = idleTarget(now);
    for (const Ripple &ripple : newestRipples)
        raiseForRipple(target, ripple, now);

    const double step = std::clamp(dt, shortestStep, longestStep);
    const double up = std::min(step * 38, 1.0);
    const double down = std::min(step * 9, 1.0);
    for (std::size_t i = 0; i < bars.size(); ++i)
        bars[i] += (target[i] - bars[i]) * (target[i] > bars[i] ? up : down);
}

double levelOf(const Bars &bars)
{
    const double mean = std::accumulate(bars.begin(), bars.end(), 0.0) / barCount;
    return std::min(mean * 2.2, 1.0);
}

double spinStep(double level, double dt)
{
    return std::clamp(dt, 0.0, longestStep) * 1.6 * std::max(level - 0.08, 0.0);
}

} // namespace kelo
