#include "visual/flash/flash.h"

#include "visual/sprites/palette.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

// Seconds.
constexpr double beatDuration = 0.18;
constexpr double answerDuration = 0.55;
constexpr double limitSpan = 1; // in which there are at most as many flashes as remembered
constexpr double closestBeats = 1.0 / 3; // to any flash before
constexpr double fastBeats = 0.5; // apart; nearer than that, every other one is left out
constexpr double freshAnswer = 0.3; // bright enough to become another answer

constexpr int mostBeats = 2; // in the span, so that an answer is never one too many

constexpr Colour red{1.0F, 0.25F, 0.2F};

bool isBeat(const QString &kind)
{
    return kind == u"beat"_s;
}

} // namespace

double flashDuration(const QString &kind)
{
    return isBeat(kind) ? beatDuration : answerDuration;
}

FlashLook flashLook(const QString &kind, bool firstBeat, double age)
{
    const double fade = std::max(1 - age / flashDuration(kind), 0.0);
    const Colour colour = kind == u"wrong"_s ? red : kind == u"good"_s ? colours::green : white;
    if (isBeat(kind))
        return {colour.faded(fade * (firstBeat ? 0.8 : 0.4)), 6, colour.faded(0)};
    return {colour.faded(fade * 0.95), 14, colour.faded(fade * 0.12)};
}

std::optional<double> FlashLimit::begin(const QString &kind, qint64 beat, double at)
{
    const double age = at - begun_.back();
    const auto recent =
        std::ranges::count_if(begun_, [at](double begun) { return begun > at - limitSpan; });
    if (isBeat(kind)) {
        const bool fast = at - std::exchange(lastBeat_, at) < fastBeats;
        if ((fast && beat % 2 != 0) || age < closestBeats || recent >= mostBeats)
            return std::nullopt;
    } else {
        const bool lit = age < (latestIsBeat_ ? beatDuration : answerDuration);
        if (lit && (latestIsBeat_ || age < freshAnswer || recent >= std::ssize(begun_))) {
            latestIsBeat_ = false;
            return begun_.back();
        }
    }
    latestIsBeat_ = isBeat(kind);
    std::shift_left(begun_.begin(), begun_.end(), 1);
    return begun_.back() = at;
}

} // namespace kelo
