#include "written/phrases.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kelo::engine {

namespace {

/// Where a phrase may begin, and how much speaks for it.
struct Border {
    int at = 0;
    double strength = 0;
};

/// The highest notes of the right hand, or of everything where it has none.
std::vector<const WrittenNote *> melodyOf(const WrittenPiece &piece)
{
    const bool hasRight = std::ranges::any_of(piece.notes,
        [](const WrittenNote &note) { return note.hand == Hands::Right && !note.rest(); });
    std::vector<const WrittenNote *> melody;
    for (const WrittenNote &note : piece.notes) {
        if (note.rest() || note.length == 0 || (hasRight && note.hand != Hands::Right))
            continue;
        if (!melody.empty() && melody.back()->at == note.at)
            melody.back() = &note;
        else
            melody.push_back(&note);
    }
    return melody;
}

std::vector<Border> bordersOf(const WrittenPiece &piece)
{
    constexpr double restWeight = 1.5;
    constexpr double slurWeight = 0.5;
    constexpr double barWeight = 0.3;
    constexpr double repeatWeight = 4;
    constexpr std::size_t around = 4; ///< notes that a length is compared with
    const auto melody = melodyOf(piece);
    std::vector<Border> borders;
    std::size_t bar = 0;
    for (std::size_t i = 0; i < melody.size(); ++i) {
        const WrittenNote &note = *melody[i];
        while (bar + 1 < piece.bars.size() && note.at >= piece.bars[bar].end())
            ++bar;
        Border border{note.at, 0};
        if (i > 0) {
            const WrittenNote &before = *melody[i - 1];
            double usual = 0;
            const std::size_t first = i > around ? i - around : 1;
            const std::size_t last = std::min(melody.size() - 1, i + around);
            for (std::size_t j = first; j <= last; ++j)
                usual += melody[j]->at - melody[j - 1]->at;
            usual /= static_cast<double>(last - first + 1);
            const double length = note.at - before.at;
            border.strength += std::log2(std::max(length / std::max(usual, 1.0), 0.25));
            border.strength += note.at > before.end() ? restWeight : 0;
            border.strength += before.slurEnds ? slurWeight : 0;
        }
        const WrittenBar &here = piece.bars[bar];
        const bool first = note.at == here.at;
        border.strength += first ? barWeight : 0;
        if (first && (here.repeatBegins || (bar > 0 && piece.bars[bar - 1].repeatEnds > 0)))
            border.strength += repeatWeight;
        borders.push_back(border);
    }
    return borders;
}

/// How well a phrase has a usual length: two or four bars.
double shape(double bars)
{
    constexpr std::array<double, 2> usual{2, 4};
    double off = std::numeric_limits<double>::infinity();
    for (const double each : usual)
        off = std::min(off, std::abs(std::log2(std::max(bars, 0.1) / each)));
    return 1 - 2 * off;
}

} // namespace

std::vector<Stretch> phrasesOf(const WrittenPiece &piece)
{
    if (piece.bars.empty())
        return {};
    constexpr double mostBars = 8;
    constexpr double fewestBars = 0.5;
    constexpr std::size_t mostNotes = 200;
    const int end = piece.bars.back().end();
    std::vector<Border> borders = bordersOf(piece);
    if (borders.empty())
        return {{0, end}};
    borders.front().at = 0;
    borders.push_back({end, 0});
    // The best way to each border from one before it.
    struct Way {
        double worth = -std::numeric_limits<double>::infinity();
        std::size_t from = 0;
    };
    std::vector<Way> ways(borders.size());
    ways[0].worth = 0;
    std::size_t first = 0;
    const std::size_t middle = piece.bars.size() / 2;
    const double bar = piece.bars[middle].length;
    for (std::size_t i = 1; i < borders.size(); ++i) {
        while (first + 1 < i
            && (borders[i].at - borders[first].at > mostBars * bar || i - first > mostNotes))
            ++first;
        for (std::size_t j = first; j < i; ++j) {
            const double bars = (borders[i].at - borders[j].at) / bar;
            const bool last = i + 1 == borders.size();
            if (bars < fewestBars && !last && j + 1 < i)
                continue;
            const double worth =
                ways[j].worth + borders[i].strength + shape(bars) - (bars < fewestBars ? 10 : 0);
            if (worth > ways[i].worth)
                ways[i] = {worth, j};
        }
    }
    std::vector<Stretch> phrases;
    for (std::size_t i = borders.size() - 1; i > 0; i = ways[i].from)
        phrases.push_back({borders[ways[i].from].at, borders[i].at});
    std::ranges::reverse(phrases);
    return phrases;
}

} // namespace kelo::engine
