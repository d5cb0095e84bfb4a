#include "composing/accompaniment.h"

#include <array>
#include <span>

namespace kelo::engine {

namespace {

/// A stroke of a figure: when and how long, in eighths; which notes.
struct Stroke {
    int at; ///< in the bar
    int length;
    unsigned notes; ///< bits: root, third, fifth, root above, root below, fifth below
    int stress = 0;
    int pitch = 0; ///< of a drum
};

constexpr unsigned root = 1;
constexpr unsigned third = 2;
constexpr unsigned fifth = 4;
constexpr unsigned octave = 8;
constexpr unsigned below = 16;
constexpr unsigned fifthBelow = 32;
constexpr unsigned fullChord = root | third | fifth;
constexpr unsigned drum = 64;

constexpr int kick = 36;
constexpr int snare = 38;
constexpr int closedHat = 42;
constexpr int ride = 51;

constexpr Stroke alberti[] = {{0, 1, root, 8}, {1, 1, fifth}, {2, 1, third}, {3, 1, fifth},
    {4, 1, root, 4}, {5, 1, fifth}, {6, 1, third}, {7, 1, fifth}};
constexpr Stroke broken[] = {{0, 2, below, 8}, {1, 2, fifthBelow}, {2, 2, root}, {3, 2, third},
    {4, 2, fifth, 4}, {5, 2, third}, {6, 2, root}, {7, 1, fifthBelow}};
constexpr Stroke waltz[] = {{0, 2, below, 10}, {2, 2, fullChord, -6}, {4, 2, fullChord, -8},
    {6, 2, fifthBelow, 6}, {8, 2, fullChord, -6}, {10, 2, fullChord, -8}};
constexpr Stroke march[] = {
    {0, 2, below, 10}, {2, 2, fullChord}, {4, 2, fifthBelow, 6}, {6, 2, fullChord}};
constexpr Stroke chords[] = {{0, 4, fullChord, 6}, {4, 4, fullChord}};
constexpr Stroke rocking[] = {{0, 1, below, 6}, {1, 1, root}, {2, 1, third}, {3, 1, fifth, 2},
    {4, 1, third}, {5, 1, root}, {6, 1, below, 4}, {7, 1, root}};
constexpr Stroke pulse[] = {{0, 1, root, 8}, {1, 1, octave}, {2, 1, fifth}, {3, 1, octave},
    {4, 1, third, 4}, {5, 1, octave}, {6, 1, fifth}, {7, 1, octave}};
constexpr Stroke sustained[] = {{0, 8, fullChord | octave}};
constexpr Stroke bass[] = {{0, 3, below, 10}, {3, 1, below}, {4, 2, fifthBelow}, {6, 2, below}};
constexpr Stroke walking[] = {
    {0, 2, below, 8}, {2, 2, third}, {4, 2, fifthBelow, 4}, {6, 2, fifth}};
constexpr Stroke comping[] = {{0, 1, fullChord | octave, 6}, {3, 1, fullChord | octave, 2}};
constexpr Stroke drums[] = {{0, 1, drum, 14, kick}, {0, 1, drum, 0, closedHat},
    {1, 1, drum, -14, closedHat}, {2, 1, drum, 10, snare}, {2, 1, drum, 0, closedHat},
    {3, 1, drum, -14, closedHat}, {4, 1, drum, 14, kick}, {4, 1, drum, 0, closedHat},
    {5, 1, drum, -14, closedHat}, {6, 1, drum, 10, snare}, {6, 1, drum, 0, closedHat},
    {7, 1, drum, -14, closedHat}};
constexpr Stroke softDrums[] = {{0, 2, drum, 0, ride}, {2, 1, drum, 6, ride},
    {3, 1, drum, -8, ride}, {4, 2, drum, 0, ride}, {6, 1, drum, 6, ride}, {7, 1, drum, -8, ride}};
constexpr Stroke timpani[] = {{0, 2, below, 16}, {6, 1, fifthBelow, -10}, {7, 1, fifthBelow}};

std::span<const Stroke> strokesOf(Figure figure)
{
    constexpr std::array<std::span<const Stroke>, 14> all{alberti, broken, waltz, march, chords,
        rocking, pulse, sustained, bass, walking, comping, drums, softDrums, timpani};
    return all[static_cast<std::size_t>(figure)];
}

} // namespace

void accompany(Score &score, const Part &player, Figure figure, int lowest, int velocity)
{
    constexpr int eighth = ticksPerQuarter / 2;
    const int part = static_cast<int>(score.parts.size());
    score.parts.push_back(player);
    const int bar = score.barTicks();
    for (std::size_t i = 0; i < score.harmony.size(); ++i) {
        const Harmony &harmony = score.harmony[i];
        const int base = lowest + (harmony.root + 144 - lowest) % 12;
        const std::array<int, 6> pitches{base, base + harmony.third, base + harmony.fifth,
            base + 12, base - 12, base - 12 + harmony.fifth};
        for (const Stroke &stroke : strokesOf(figure)) {
            const int at = stroke.at * eighth;
            if (at >= bar)
                continue;
            const int length = std::min(stroke.length * eighth, bar - at);
            const auto add = [&](int pitch) {
                score.tones.push_back({static_cast<int>(i) * bar + at, length, pitch,
                    velocity + stroke.stress, part});
            };
            for (std::size_t note = 0; note < pitches.size(); ++note) {
                if ((stroke.notes >> note & 1U) != 0)
                    add(pitches[note]);
            }
            if ((stroke.notes & drum) != 0)
                add(stroke.pitch);
        }
    }
    score.sort();
}

} // namespace kelo::engine
