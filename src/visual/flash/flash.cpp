#include "visual/flash/flash.h"

#include "visual/sprites/palette.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr double limitSpan = 1; // second, in which there are at most as many flashes as remembered

constexpr Colour red{1.0F, 0.25F, 0.2F};

bool isBeat(const QString &kind)
{
    return kind == u"beat"_s;
}

} // namespace

double flashDuration(const QString &kind)
{
    return isBeat(kind) ? 0.18 : 0.55;
}

FlashLook flashLook(const QString &kind, bool firstBeat, double age)
{
    const double fade = std::max(1 - age / flashDuration(kind), 0.0);
    const Colour colour = kind == u"wrong"_s ? red : kind == u"good"_s ? colours::green : white;
    if (isBeat(kind))
        return {colour.faded(fade * (firstBeat ? 0.8 : 0.4)), 6, colour.faded(0)};
    return {colour.faded(fade * 0.95), 14, colour.faded(fade * 0.12)};
}

std::optional<double> FlashLimit::begin(const QString &kind, double at)
{
    const bool oneWaits = at < begun_.back();
    const double earliest = oneWaits ? begun_.back() : begun_.front() + limitSpan;
    if (isBeat(kind) && at < earliest)
        return std::nullopt;
    if (oneWaits)
        return earliest; // the newest answer instead of the one before it
    std::shift_left(begun_.begin(), begun_.end(), 1);
    return begun_.back() = std::max(at, earliest);
}

} // namespace kelo
