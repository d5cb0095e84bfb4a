#include "link/chord.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <bit>

namespace kelo {

namespace {

constexpr unsigned semitones = 12;
constexpr unsigned allClasses = (1U << semitones) - 1;

constexpr std::array<QStringView, semitones> rootNames{
    u"C", u"C#", u"D", u"E♭", u"E", u"F", u"F#", u"G", u"A♭", u"A", u"B♭", u"B"};

struct Quality {
    QStringView name;
    unsigned classes; ///< bit i: the note i semitones above the root belongs to it
};

constexpr unsigned notes(std::initializer_list<unsigned> intervals)
{
    unsigned set = 0;
    for (const unsigned interval : intervals)
        set |= 1U << interval;
    return set;
}

// Among equal scores the first one wins, so sevenths stand before the triads inside them.
constexpr std::array qualities{
    Quality{u"MAJOR 7", notes({0, 4, 7, 11})},
    Quality{u"MINOR 7", notes({0, 3, 7, 10})},
    Quality{u"7", notes({0, 4, 7, 10})},
    Quality{u"MAJOR", notes({0, 4, 7})},
    Quality{u"MINOR", notes({0, 3, 7})},
    Quality{u"DIM", notes({0, 3, 6})},
    Quality{u"AUG", notes({0, 4, 8})},
    Quality{u"SUS 4", notes({0, 5, 7})},
    Quality{u"SUS 2", notes({0, 2, 7})},
};

unsigned pitchClass(qint64 pitch)
{
    const qint64 rest = pitch % semitones;
    return static_cast<unsigned>(rest < 0 ? rest + semitones : rest);
}

unsigned transposed(unsigned classes, unsigned root)
{
    return ((classes << root) | (classes >> (semitones - root))) & allClasses;
}

} // namespace

std::optional<QString> chordName(std::span<const qint64> pitches)
{
    unsigned played = 0;
    for (const qint64 pitch : pitches)
        played |= 1U << pitchClass(pitch);
    if (std::popcount(played) < 3)
        return std::nullopt;
    const unsigned bass = pitchClass(*std::ranges::min_element(pitches));

    int bestScore = 0;
    unsigned bestRoot = 0;
    const Quality *best = nullptr;
    for (unsigned root = 0; root < semitones; ++root) {
        for (const Quality &quality : qualities) {
            const unsigned chord = transposed(quality.classes, root);
            if ((chord & played) != chord)
                continue;
            // The more of what is played it explains the better; then the bass counts.
            const int score = 2 * std::popcount(chord) + (root == bass ? 1 : 0);
            if (score > bestScore) {
                bestScore = score;
                bestRoot = root;
                best = &quality;
            }
        }
    }
    if (!best)
        return std::nullopt;
    return QString(rootNames[bestRoot] % u' ' % best->name);
}

} // namespace kelo
