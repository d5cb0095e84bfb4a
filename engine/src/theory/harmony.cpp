#include "theory/harmony.h"

#include <algorithm>
#include <array>
#include <bitset>

namespace kelo::engine {

namespace {

struct Kind {
    int third;
    int fifth;
    double rarity; ///< how much more convincing it must be than a plain triad
};

constexpr std::array<Kind, 5> kinds{{{4, 7, 0}, {3, 7, 0}, {3, 6, 0.3}, {4, 8, 0.4}, {5, 7, 0.4}}};

constexpr double rootBonus = 0.6;
constexpr double missing = 0.8;
constexpr double colour = 0.3; ///< a seventh, a ninth
constexpr double foreign = 0.9;

} // namespace

std::optional<Harmony> harmonyOf(std::span<const int> pitches)
{
    std::bitset<12> held;
    for (const int pitch : pitches)
        held.set(static_cast<std::size_t>(pitch % 12));
    if (held.count() < 2)
        return {};
    const int lowest = *std::ranges::min_element(pitches) % 12;
    std::optional<Harmony> best;
    double bestScore = 0.5;
    for (int root = 0; root < 12; ++root) {
        const auto has = [&](int step) {
            return held[static_cast<std::size_t>((root + step) % 12)];
        };
        for (const auto &[third, fifth, rarity] : kinds) {
            double score = -rarity + (root == lowest ? rootBonus : 0);
            for (int step = 0; step < 12; ++step) {
                const bool member = step == 0 || step == third || step == fifth;
                if (member)
                    score += has(step) ? 1 : -missing;
                else if (has(step))
                    score -= step == 10 || step == 11 || step == 2 || step == 9 ? colour : foreign;
            }
            if (score > bestScore) {
                bestScore = score;
                best = Harmony{root, third, fifth};
            }
        }
    }
    return best;
}

} // namespace kelo::engine
