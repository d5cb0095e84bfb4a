#include "practice/spacing.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace kelo::engine {

namespace {

constexpr int upToTempo = 90; ///< percent
constexpr double leastEase = 1.3;
constexpr int longestWait = 365; ///< days

/// What SM-2 makes of a grade.
void repeat(KnownBar &known, int grade, std::chrono::local_days today)
{
    const auto waited = known.due - known.last;
    known.repetitions = grade < 3 ? 0 : known.repetitions + 1;
    const double days = known.repetitions <= 1 ? 1
        : known.repetitions == 2               ? 6
                                 : std::round(static_cast<double>(waited.count()) * known.ease);
    const int missing = 5 - grade;
    known.ease = std::max(leastEase, known.ease + 0.1 - missing * (0.08 + missing * 0.02));
    known.grade = grade;
    known.last = today;
    known.due = today + std::chrono::days(static_cast<int>(std::min<double>(days, longestWait)));
}

} // namespace

int gradeOf(const PlayedBar &played)
{
    if (played.wrong <= 0)
        return played.tempo >= upToTempo ? 5 : 4;
    return std::max(1, 4 - played.wrong);
}

std::vector<KnownBar> knownBars(std::span<const PlayedBar> played)
{
    std::map<std::tuple<std::string, Hands, int>, KnownBar> all;
    for (const PlayedBar &each : played) {
        const auto day = std::chrono::floor<std::chrono::days>(each.at);
        const auto [place, isNew] = all.try_emplace({each.piece, each.hands, each.bar},
            KnownBar{.piece = each.piece, .bar = each.bar, .hands = each.hands});
        KnownBar &known = place->second;
        if (isNew || day > known.last)
            repeat(known, gradeOf(each), day);
        known.wrong = each.wrong;
        known.tempo = each.tempo > 0 ? each.tempo : known.tempo;
    }
    std::vector<KnownBar> bars;
    bars.reserve(all.size());
    for (auto &[key, known] : all)
        bars.push_back(std::move(known));
    return bars;
}

} // namespace kelo::engine
