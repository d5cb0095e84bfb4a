#include "practice/played_bar.h"

namespace kelo::engine {

std::vector<PlayedBar> barsOf(
    const PlayedPart &part, const std::string &piece, std::chrono::local_seconds at)
{
    std::map<int, int> wrong;
    for (const auto &[bar, keys] : part.wrong)
        wrong[bar >= part.first && bar <= part.last ? bar : part.first] += keys;
    std::vector<PlayedBar> bars;
    for (int bar = part.first; bar <= part.last; ++bar) {
        if (part.whole || wrong[bar] > 0)
            bars.push_back({at, piece, bar, part.hands, wrong[bar], part.tempo});
    }
    return bars;
}

} // namespace kelo::engine
