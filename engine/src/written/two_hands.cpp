#include "written/two_hands.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double writtenTogether = 0.04; ///< seconds within which the keys of a chord are written
constexpr int octave = 12;
constexpr std::size_t mostTogether = 20;
constexpr double endless = std::numeric_limits<double>::infinity();

struct Chord {
    double at;
    std::vector<std::pair<int, std::size_t>> notes; ///< pitch, and place among all; ascending
};

std::vector<Chord> chordsOf(const std::vector<const Note *> &notes)
{
    std::vector<Chord> chords;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (chords.empty() || notes[i]->at - chords.back().at > writtenTogether
            || chords.back().notes.size() == mostTogether)
            chords.push_back({notes[i]->at, {}});
        chords.back().notes.emplace_back(notes[i]->pitch, i);
    }
    for (Chord &chord : chords)
        std::ranges::sort(chord.notes);
    return chords;
}

/// The best way that gives so many of a chord's notes to the left hand.
struct Way {
    double cost = 0;
    double left = 48; ///< where the hands lie
    double right = 67;
    std::uint8_t before = 0;
};

using Ways = std::vector<Way>; ///< by how many notes are the left hand's

double reach(int low, int high, std::size_t count)
{
    const int span = high - low;
    return (span > octave ? 2.0 * (span - octave) : 0.0)
        + (count > 5 ? 6.0 * static_cast<double>(count - 5) : 0.0);
}

/// What it costs to hold a chord with so many notes in the left hand.
double held(const Chord &chord, std::size_t split)
{
    const auto &notes = chord.notes;
    return (split > 0 ? reach(notes[0].first, notes[split - 1].first, split) : 0)
        + (split < notes.size()
                ? reach(notes[split].first, notes.back().first, notes.size() - split)
                : 0);
}

double middle(int low, int high)
{
    return (low + high) / 2.0;
}

double move(double from, double to)
{
    const double far = std::abs(to - from);
    return 0.15 * far + (far > octave ? 0.3 * (far - octave) : 0);
}

/// The right hand lies above the left one, each on its side of the middle.
double lying(const Way &way)
{
    return (way.left >= way.right ? 4 : 0)
        + 0.02 * (std::max(0.0, way.left - 60) + std::max(0.0, 60 - way.right));
}

/// The ways to a chord from those to the one that is played before it.
Ways onward(const Ways &ways, const Chord &chord)
{
    const auto &notes = chord.notes;
    Ways now(notes.size() + 1);
    for (std::size_t split = 0; split <= notes.size(); ++split) {
        const double cost = held(chord, split);
        const double left = split > 0 ? middle(notes[0].first, notes[split - 1].first) : 0;
        const double right =
            split < notes.size() ? middle(notes[split].first, notes.back().first) : 0;
        now[split].cost = endless;
        for (std::size_t i = 0; i < ways.size(); ++i) {
            const Way &way = ways[i];
            Way next{way.cost + cost, split > 0 ? left : way.left,
                split < notes.size() ? right : way.right, static_cast<std::uint8_t>(i)};
            next.cost += move(way.left, next.left) + move(way.right, next.right) + lying(next);
            if (next.cost < now[split].cost)
                now[split] = next;
        }
    }
    return now;
}

} // namespace

Division divideBetweenHands(const std::vector<const Note *> &notes)
{
    const std::vector<Chord> chords = chordsOf(notes);
    std::vector<Ways> forth{Ways{Way{}}};
    for (const Chord &chord : chords)
        forth.push_back(onward(forth.back(), chord));
    Division division{std::vector(notes.size(), Hands::Right), std::vector(notes.size(), 0.0)};
    auto taken = static_cast<std::size_t>(
        std::ranges::min_element(forth.back(), {}, &Way::cost) - forth.back().begin());
    Ways back{Way{}}; // what comes after a chord, from the end on
    for (std::size_t i = chords.size(); i-- > 0;) {
        const Chord &chord = chords[i];
        const Ways &here = forth[i + 1];
        back = onward(back, chord);
        // What either hand would have cost, both ways through added up.
        std::vector<double> through;
        for (std::size_t split = 0; split < here.size(); ++split) {
            const double twice = held(chord, split) + lying(back[split]);
            through.push_back(here[split].cost + back[split].cost - twice);
        }
        for (std::size_t note = 0; note < chord.notes.size(); ++note) {
            const auto first = through.begin();
            const auto border = first + static_cast<std::ptrdiff_t>(note) + 1;
            const double right = *std::min_element(first, border);
            const double left = *std::min_element(border, through.end());
            const std::size_t place = chord.notes[note].second;
            division.margins[place] = std::abs(left - right);
            if (note < taken)
                division.hands[place] = Hands::Left;
        }
        taken = here[taken].before;
    }
    return division;
}

} // namespace kelo::engine
