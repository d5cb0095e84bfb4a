#include "composing/jam.h"

#include "composing/accompaniment.h"
#include "composing/transcription.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>

namespace kelo::engine {

namespace {

/// The nearest note of the chord; of two the lower.
int chordNoteNear(const Harmony &harmony, int pitch)
{
    for (int away = 0; away < 12; ++away) {
        if (contains(harmony, pitch - away))
            return pitch - away;
        if (contains(harmony, pitch + away))
            return pitch + away;
    }
    return pitch;
}

} // namespace

int barsToTrade(const Score &phrase)
{
    return phrase.bars() > 5 ? 8 : 4;
}

Score answerTo(const Score &phrase, int bars, std::uint32_t seed)
{
    std::minstd_rand random(seed);
    const int bar = phrase.barTicks();
    const int heard = std::max(phrase.bars(), 1);
    Score theme = phrase;
    harmonise(theme);
    Score answer = phrase;
    answer.title = "An answer";
    answer.parts = {{"Piano"}};
    answer.tones.clear();
    answer.harmony.clear();
    const int axis = phrase.tones.empty() ? 0 : degreeOf(phrase.key, phrase.tones.front().pitch);
    for (int i = 0; i < bars; ++i) {
        const bool last = i + 1 == bars;
        const int source = i % heard;
        answer.harmony.push_back(
            last ? triadOn(phrase.key, 0) : theme.harmony[static_cast<std::size_t>(source)]);
        const Harmony &harmony = answer.harmony.back();
        // Each bar keeps the rhythm that was played; its notes go another way.
        const int way = std::uniform_int_distribution<int>(0, 2)(random);
        const int step = std::uniform_int_distribution<int>(1, 2)(random);
        for (Tone tone : phrase.partTones(0)) {
            if (tone.at < source * bar || tone.at >= (source + 1) * bar)
                continue;
            const int place = tone.at - source * bar;
            const int degree = degreeOf(phrase.key, tone.pitch);
            const int next = way == 0 ? 2 * axis - degree
                : way == 1            ? degree + step
                                      : degree - step;
            tone.pitch = pitchOf(phrase.key, next);
            if (place % (2 * ticksPerQuarter) == 0)
                tone.pitch = chordNoteNear(harmony, tone.pitch);
            tone.pitch = std::clamp(tone.pitch, 55, 88);
            tone.at = i * bar + place;
            tone.length = std::min(tone.length, bar - place);
            tone.velocity = std::clamp(tone.velocity, 50, 100);
            answer.tones.push_back(tone);
        }
    }
    // It ends at home, on a long note.
    const int ending = (bars - 1) * bar;
    std::erase_if(answer.tones, [&](const Tone &tone) { return tone.at > ending; });
    if (answer.tones.empty() || answer.tones.back().at != ending)
        answer.tones.push_back({ending, bar / 2, pitchOf(phrase.key, axis), 80, 0});
    Tone &close = answer.tones.back();
    close.pitch = chordNoteNear({answer.harmony.back().root, 12, 12}, close.pitch);
    close.length = bar / 2;
    accompany(answer, {"Chords"}, Figure::Comping, 48, 46);
    return answer;
}

} // namespace kelo::engine
