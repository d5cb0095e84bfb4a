#include "practice/practice_plan.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace kelo::engine {

namespace {

constexpr std::size_t mostAssignments = 5;
constexpr int mostBarsTogether = 4;
constexpr int longAgo = 4; ///< days

int daysSince(std::chrono::local_days day, std::chrono::local_days today)
{
    return static_cast<int>(std::max<std::chrono::days::rep>(0, (today - day).count()));
}

Assignment alone(const KnownBar &bar, std::chrono::local_days today)
{
    return {bar.piece, bar.bar, bar.bar, bar.hands, bar.wrong, daysSince(bar.last, today)};
}

/// Takes the bars beside it that have to be played again, too.
void widen(Assignment &assignment, std::vector<const KnownBar *> &rest)
{
    while (assignment.last - assignment.first + 1 < mostBarsTogether) {
        const auto next = std::ranges::find_if(rest, [&](const KnownBar *bar) {
            return bar->piece == assignment.piece && bar->hands == assignment.hands
                && (bar->bar == assignment.first - 1 || bar->bar == assignment.last + 1);
        });
        if (next == rest.end())
            return;
        assignment.first = std::min(assignment.first, (*next)->bar);
        assignment.last = std::max(assignment.last, (*next)->bar);
        assignment.wrong += (*next)->wrong;
        rest.erase(next);
    }
}

/// Each piece with the share of its bars that are sure, and how many they are.
std::string bestOf(const std::vector<KnownBar> &bars, const std::set<std::string> &pieces)
{
    struct Count {
        int sure = 0;
        int all = 0;
    };
    std::map<std::string, Count> counts;
    for (const KnownBar &bar : bars) {
        Count &count = counts[bar.piece];
        count.sure += bar.sure();
        ++count.all;
    }
    std::string best;
    int most = 0;
    for (const auto &[piece, count] : counts) {
        const bool goesWell = count.sure * 4 >= count.all * 3;
        if (goesWell && count.sure > most && pieces.contains(piece)) {
            most = count.sure;
            best = piece;
        }
    }
    return best;
}

} // namespace

PracticePlan planFor(const std::vector<KnownBar> &bars, std::chrono::local_days today,
    const std::set<std::string> &pieces)
{
    PracticePlan plan{.known = bestOf(bars, pieces)};
    std::vector<const KnownBar *> rest;
    std::map<std::string, const KnownBar *> latest; ///< bar of each piece
    for (const KnownBar &bar : bars) {
        if (!pieces.contains(bar.piece))
            continue;
        if (!bar.sure() || bar.due <= today)
            rest.push_back(&bar);
        const KnownBar *&last = latest[bar.piece];
        if (!last || bar.last > last->last)
            last = &bar;
    }
    std::ranges::stable_sort(rest, {}, [](const KnownBar *bar) {
        return std::tuple(bar->grade, bar->due, -bar->wrong, bar->ease);
    });
    while (!rest.empty() && plan.weakest.size() < mostAssignments) {
        Assignment next = alone(*rest.front(), today);
        rest.erase(rest.begin());
        widen(next, rest);
        plan.weakest.push_back(next);
    }
    for (const auto &[piece, bar] : latest) {
        const int days = daysSince(bar->last, today);
        if (days >= longAgo && (!plan.untouched || days > plan.untouched->days))
            plan.untouched = alone(*bar, today);
    }
    return plan;
}

PracticeWeek weekUntil(std::chrono::local_days today, std::span<const PlayedBar> played,
    const std::vector<KnownBar> &bars)
{
    constexpr int daysOfWeek = 7;
    PracticeWeek week;
    std::set<std::chrono::local_days> days;
    int clean = 0;
    int before = 0;
    int cleanBefore = 0;
    for (const PlayedBar &each : played) {
        const auto day = std::chrono::floor<std::chrono::days>(each.at);
        const int ago = daysSince(day, today);
        if (ago < daysOfWeek) {
            days.insert(day);
            ++week.bars;
            clean += each.wrong == 0;
        } else if (ago < 2 * daysOfWeek) {
            ++before;
            cleanBefore += each.wrong == 0;
        }
    }
    week.days = static_cast<int>(days.size());
    week.clean = week.bars > 0 ? 100 * clean / week.bars : 0;
    week.cleanBefore = before > 0 ? 100 * cleanBefore / before : -1;
    week.known = static_cast<int>(bars.size());
    week.sure = static_cast<int>(std::ranges::count_if(bars, &KnownBar::sure));
    return week;
}

} // namespace kelo::engine
