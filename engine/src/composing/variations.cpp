#include "composing/variations.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace kelo::engine {

namespace {

Harmony harmonyAt(const Score &score, int at)
{
    const auto bar = static_cast<std::size_t>(at / score.barTicks());
    return bar < score.harmony.size() ? score.harmony[bar] : triadOn(score.key, 0);
}

/// The chord note that is nearest to a pitch, at least `above` semitones above it.
int chordNote(const Harmony &harmony, int from, int above)
{
    int pitch = from + above;
    while (!contains(harmony, pitch))
        ++pitch;
    return pitch;
}

using Tones = std::vector<Tone>;

/// Each long note is halved, and its second half steps towards the next.
Tones passingNotes(const Score &score, const Tones &melody)
{
    Tones varied;
    for (std::size_t i = 0; i < melody.size(); ++i) {
        Tone tone = melody[i];
        if (tone.length < ticksPerQuarter || i + 1 == melody.size()) {
            varied.push_back(tone);
            continue;
        }
        Tone second = tone;
        tone.length /= 2;
        second.length -= tone.length;
        second.at += tone.length;
        const int degree = degreeOf(score.key, tone.pitch);
        const int step = melody[i + 1].pitch < tone.pitch ? -1 : 1;
        second.pitch = pitchOf(score.key, degree + step);
        second.velocity -= 6;
        varied.push_back(tone);
        varied.push_back(second);
    }
    return varied;
}

/// Pairs of equal notes become long and short.
Tones dotted(const Score &, const Tones &melody)
{
    Tones varied = melody;
    for (std::size_t i = 0; i + 1 < varied.size(); ++i) {
        Tone &first = varied[i];
        Tone &second = varied[i + 1];
        const bool pair = first.length == second.length && first.at + first.length == second.at
            && first.length >= ticksPerQuarter / 2;
        if (!pair)
            continue;
        const int moved = first.length / 2;
        first.length += moved;
        second.at += moved;
        second.length -= moved;
        ++i;
    }
    return varied;
}

/// Every note is broken into its chord, upwards.
Tones brokenChords(const Score &score, const Tones &melody)
{
    Tones varied;
    for (const Tone &tone : melody) {
        const Harmony harmony = harmonyAt(score, tone.at);
        const int pieces = tone.length >= ticksPerQuarter ? 4 : 1;
        int pitch = tone.pitch;
        for (int i = 0; i < pieces; ++i) {
            const int from = tone.length * i / pieces;
            const int to = tone.length * (i + 1) / pieces;
            varied.push_back({tone.at + from, to - from, pitch, tone.velocity - 3 * i, tone.part});
            pitch = chordNote(harmony, pitch, i == 2 ? -5 : 1);
        }
    }
    return varied;
}

/// The melody goes down where it went up, on notes of the chords where it is stressed.
Tones mirrored(const Score &score, const Tones &melody)
{
    Tones varied;
    const int axis = melody.empty() ? 0 : degreeOf(score.key, melody.front().pitch);
    for (Tone tone : melody) {
        tone.pitch = pitchOf(score.key, 2 * axis - degreeOf(score.key, tone.pitch));
        if (tone.at % (2 * ticksPerQuarter) == 0
            && !contains(harmonyAt(score, tone.at), tone.pitch))
            tone.pitch = chordNote(harmonyAt(score, tone.at), tone.pitch, 0);
        varied.push_back(tone);
    }
    return varied;
}

/// An octave higher, each long note with a turn around it.
Tones turned(const Score &score, const Tones &melody)
{
    Tones varied;
    for (const Tone &tone : melody) {
        const int degree = degreeOf(score.key, tone.pitch);
        const bool room = tone.length >= ticksPerQuarter;
        constexpr int quick = ticksPerQuarter / 4;
        int at = tone.at;
        for (const int step : {1, 0, -1}) {
            if (room)
                varied.push_back({at, quick, pitchOf(score.key, degree + step) + 12,
                    tone.velocity - 8, tone.part});
            at += room ? quick : 0;
        }
        varied.push_back(
            {at, tone.at + tone.length - at, tone.pitch + 12, tone.velocity, tone.part});
    }
    return varied;
}

struct Way {
    std::string_view name;
    Tones (*vary)(const Score &score, const Tones &melody);
};

constexpr std::array<Way, variationCount> ways{{{"with passing notes", &passingNotes},
    {"in dotted rhythm", &dotted}, {"in broken chords", &brokenChords},
    {"turned upside down", &mirrored}, {"an octave higher, with turns", &turned}}};

const Way &wayOf(int which)
{
    return ways[static_cast<std::size_t>(std::abs(which) % variationCount)];
}

} // namespace

Score variationOf(const Score &theme, int which)
{
    Score score = theme;
    std::erase_if(score.tones, [](const Tone &tone) { return tone.part == 0; });
    const Tones melody = wayOf(which).vary(theme, theme.partTones(0));
    score.tones.insert(score.tones.end(), melody.begin(), melody.end());
    score.sort();
    return score;
}

std::string_view variationName(int which)
{
    return wayOf(which).name;
}

} // namespace kelo::engine
