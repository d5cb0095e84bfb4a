#include "visual/notes/sparks.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelo {

namespace {

// Spreads are the whole range around the mean.
constexpr double life = 0.5; // seconds
constexpr double lifeSpread = 0.35;
constexpr double longestLife = life + lifeSpread / 2;
constexpr double direction = std::numbers::pi / 2; // straight up
constexpr double directionSpread = 1.5; // radians
constexpr double speedSpread = 0.7; // of the mean speed
constexpr double gravity = -520; // points a second, each second
constexpr double dimming = -2; // of its alpha, a second
constexpr double sparkSize = 64 * 0.09; // points
constexpr double sizeSpread = 64 * 0.06;
constexpr double shrinking = 64 * -0.08; // points a second

/// Numbers that look random and are the same for the same spark (splitmix64).
class Chance {
public:
    Chance(quint32 seed, qint64 spark)
        : state_((static_cast<quint64>(seed) << 32U) ^ static_cast<quint64>(spark))
    {
    }

    /// Between -0.5 and 0.5.
    double next()
    {
        state_ += 0x9e3779b97f4a7c15U;
        quint64 z = state_;
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return static_cast<double>((z ^ (z >> 31U)) >> 11U) * 0x1p-53 - 0.5;
    }

private:
    quint64 state_;
};

} // namespace

void Sparks::draw(SpriteList &list, double now) const
{
    const double until = std::min(now, out.value_or(now));
    const auto nth = [this](double time) {
        return static_cast<qint64>(std::floor(std::clamp((time - born) * rate, -1.0, 1e15)));
    };
    const qint64 first = std::max<qint64>(nth(now - longestLife), 0);
    const qint64 last = count > 0 ? std::min<qint64>(nth(until), count - 1) : nth(until);
    for (qint64 i = first; i <= last; ++i) {
        Chance chance(seed, i);
        const double age = now - born - static_cast<double>(i) / rate;
        const double alpha = 1 + dimming * age;
        const double itsLife = life + lifeSpread * chance.next();
        const double itsDirection = direction + directionSpread * chance.next();
        const double itsSpeed = speed * (1 + speedSpread * chance.next());
        const double itsSize = sparkSize + sizeSpread * chance.next() + shrinking * age;
        if (age > itsLife || alpha <= 0 || itsSize <= 0)
            continue;
        list.push_back(glow(x + itsSpeed * std::cos(itsDirection) * age,
            y + itsSpeed * std::sin(itsDirection) * age + gravity * age * age / 2, itsSize,
            white.faded(alpha)));
    }
}

} // namespace kelo
