#include "composing/composer.h"

#include "composing/accompaniment.h"
#include "composing/melody.h"
#include "composing/variations.h"

#include <array>
#include <random>
#include <span>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr std::size_t period = 8; ///< bars
using Chords = std::array<int, period>; ///< degrees, a bar each

/// Periods that begin and end at home, with a half close in the middle.
constexpr Chords homeward[] = {{0, 3, 0, 4, 0, 3, 4, 0}, {0, 5, 3, 4, 0, 5, 4, 0},
    {0, 0, 3, 4, 0, 1, 4, 0}, {0, 4, 5, 4, 0, 3, 4, 0}, {0, 3, 1, 4, 0, 5, 4, 0}};
/// Periods that wander and lead back.
constexpr Chords wanderings[] = {{5, 2, 3, 4, 5, 3, 1, 4}, {3, 0, 3, 4, 1, 5, 3, 4},
    {4, 0, 4, 0, 3, 1, 5, 4}, {5, 5, 1, 4, 3, 0, 1, 4}};

struct MoodStyle {
    bool minor;
    int slowest;
    int fastest;
    Metre metre;
    Figure figure;
    bool lively;
    std::string_view name;
};

constexpr MoodStyle moodStyles[] = {
    {false, 112, 132, {4, 4}, Figure::Alberti, true, "A bright piece"},
    {false, 66, 80, {4, 4}, Figure::Broken, false, "A calm piece"},
    {true, 58, 72, {4, 4}, Figure::Broken, false, "A sad piece"},
    {false, 132, 156, {3, 4}, Figure::Waltz, false, "A waltz"},
    {false, 104, 116, {4, 4}, Figure::March, true, "A march"},
    {true, 76, 92, {3, 4}, Figure::Alberti, true, "A mysterious piece"},
};

/// Sections by letter; a small letter is a variation of the section before.
constexpr std::string_view forms[] = {"ABA", "AaBA", "ABACA", "Aaaa", "AaBBA"};

/// A section: eight bars of melody and harmony.
struct Section {
    Chords chords{};
    std::vector<DegreeTone> melody;
};

template <typename List> const auto &oneOf(const List &list, std::minstd_rand &random)
{
    const auto last = static_cast<int>(std::size(list)) - 1;
    return list[static_cast<std::size_t>(std::uniform_int_distribution<int>(0, last)(random))];
}

void append(Score &score, const Section &section, int phraseStress)
{
    const int start = static_cast<int>(score.harmony.size()) * score.barTicks();
    for (const int degree : section.chords)
        score.harmony.push_back(triadOn(score.key, degree));
    for (const DegreeTone &tone : section.melody) {
        const int bar = tone.at / score.barTicks();
        const int chord = section.chords[static_cast<std::size_t>(bar)];
        const int swell = bar < 6 ? bar : 10 - bar; // louder towards the top of the arch
        const int beat = tone.at % score.barTicks() == 0 ? 6 : 0;
        score.tones.push_back(
            {start + tone.at, tone.length, pitchOver(score.key, tone.degree, chord) + 12,
                74 + swell * 2 + beat + phraseStress, 0});
    }
}

} // namespace

Mood moodAt(int hour)
{
    return hour < 5 ? Mood::Mysterious
        : hour < 12 ? Mood::Happy
        : hour < 15 ? Mood::March
        : hour < 19 ? Mood::Waltz
                    : Mood::Calm;
}

Score makeUp(const Wish &wish, std::uint32_t seed)
{
    std::minstd_rand random(seed);
    random.discard(7); // near seeds begin alike
    const MoodStyle &manner = moodStyles[static_cast<std::size_t>(wish.mood)];
    constexpr std::array<int, 5> tonics{0, 7, 2, 5, 9};
    Score score;
    score.key = wish.key.value_or(Tonality{oneOf(tonics, random), manner.minor});
    score.metre = manner.metre;
    score.tempo = std::uniform_int_distribution<int>(manner.slowest, manner.fastest)(random);
    score.title = std::string(manner.name) + " in " + nameOf(score.key);
    score.parts = {{"Right hand"}};

    std::array<Section, 3> sections;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        Section &section = sections[i];
        section.chords = i == 0 ? oneOf(homeward, random) : oneOf(wanderings, random);
        section.melody = periodOver(section.chords, score.metre, manner.lively, i > 0, random);
    }
    int stress = 0;
    for (const char letter : oneOf(forms, random)) {
        const bool varied = letter >= 'a';
        const auto which = static_cast<std::size_t>(letter - (varied ? 'a' : 'A'));
        if (varied) {
            Score part = score;
            part.tones.clear();
            part.harmony.clear();
            append(part, sections[which], stress);
            part = variationOf(part, static_cast<int>(score.harmony.size() / period) - 1);
            const int start = static_cast<int>(score.harmony.size()) * score.barTicks();
            for (Tone tone : part.tones) {
                tone.at += start;
                score.tones.push_back(tone);
            }
            score.harmony.insert(score.harmony.end(), part.harmony.begin(), part.harmony.end());
        } else {
            append(score, sections[which], stress);
        }
        stress = which > 0 ? 4 : -2;
    }
    accompany(score, {"Left hand"}, manner.figure, 48, 56);
    return score;
}

} // namespace kelo::engine
