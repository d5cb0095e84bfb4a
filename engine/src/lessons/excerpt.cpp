#include "lessons/excerpt.h"

#include "written/hand_division.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr double writtenTogether = 0.04; ///< seconds within which the keys of a chord are written
constexpr std::size_t mostSteps = 8; ///< that are easily kept in mind
constexpr double barWithoutMetre = 2;

std::vector<Step> stepsOf(
    const Piece &piece, const std::vector<Hands> &owners, Hands hands, double from, double to)
{
    std::vector<Step> steps;
    const auto first = std::ranges::lower_bound(piece.notes, from - writtenTogether, {}, &Note::at);
    for (auto it = first; it != piece.notes.end() && it->at < to - writtenTogether; ++it) {
        const Note &note = *it;
        const Hands owner = owners[static_cast<std::size_t>(it - piece.notes.begin())];
        if (owner == Hands::Both || (hands != Hands::Both && owner != hands))
            continue;
        if (steps.empty() || note.at - steps.back().at > writtenTogether)
            steps.push_back({note.at, {}});
        auto &pitches = steps.back().pitches;
        const auto place = std::ranges::lower_bound(pitches, note.pitch);
        if (place == pitches.end() || *place != note.pitch)
            pitches.insert(place, note.pitch);
    }
    return steps;
}

std::vector<double> barsOf(const Piece &piece)
{
    if (!piece.bars.empty())
        return piece.bars;
    std::vector<double> bars;
    for (double at = 0; at < piece.length; at += barWithoutMetre)
        bars.push_back(at);
    return bars;
}

} // namespace

std::vector<Excerpt> excerptsOf(const Piece &piece, Hands hands)
{
    const auto owners = handsOf(piece);
    const auto bars = barsOf(piece);
    const auto startOf = [&](std::size_t bar) {
        return bar < bars.size() ? bars[bar] : std::max(piece.length, bars.back()) + 1;
    };
    std::vector<Excerpt> all;
    for (std::size_t bar = 0; bar < bars.size();) {
        const auto steps = [&](Hands whose, std::size_t count) {
            return stepsOf(piece, owners, whose, startOf(bar), startOf(bar + count));
        };
        const bool two = bar + 1 < bars.size() && steps(hands, 2).size() <= mostSteps;
        const std::size_t count = two ? 2 : 1;
        const std::size_t before = all.size();
        for (const Hands whose : {Hands::Right, Hands::Left, Hands::Both}) {
            if (hands != Hands::Both && whose != hands)
                continue;
            auto found = steps(whose, count);
            if (found.empty() || (whose == Hands::Both && all.size() - before < 2))
                continue; // nothing to play, or nothing to put together
            all.push_back({startOf(bar), startOf(bar + count), static_cast<int>(bar) + 1,
                static_cast<int>(bar + count), whose, std::move(found)});
        }
        bar += count;
    }
    return all;
}

Piece pieceOf(const Excerpt &excerpt, const Piece &whole)
{
    const auto owners = handsOf(whole);
    Piece part;
    part.spelling = whole.spelling;
    for (std::size_t i = 0; i < whole.notes.size(); ++i) {
        Note note = whole.notes[i];
        const bool wanted = excerpt.hands == Hands::Both || owners[i] == excerpt.hands;
        if (!wanted || note.at < excerpt.from - writtenTogether
            || note.at >= excerpt.to - writtenTogether || owners[i] == Hands::Both)
            continue;
        note.duration = std::min(note.duration, excerpt.to - note.at);
        note.at = std::max(0.0, note.at - excerpt.from);
        note.channel = note.track = owners[i] == Hands::Right ? 0 : 1;
        part.notes.push_back(note);
    }
    addMessages(part);
    return part;
}

} // namespace kelo::engine
