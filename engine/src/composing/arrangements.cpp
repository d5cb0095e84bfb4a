#include "composing/arrangements.h"

#include "composing/accompaniment.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelo::engine {

namespace {

// General MIDI programs.
constexpr int grandPiano = 0;
constexpr int musicBox = 10;
constexpr int fingeredBass = 33;
constexpr int strings = 48;
constexpr int harp = 46;
constexpr int timpaniProgram = 47;
constexpr int choir = 52;
constexpr int frenchHorn = 60;
constexpr int squareLead = 80;
constexpr int sawLead = 81;
constexpr int synthBass = 38;
constexpr int guitar = 25;

struct Backing {
    Part player;
    Figure figure;
    int lowest;
    int velocity;
};

struct Scoring {
    std::string_view name;
    int tempo; ///< quarters a minute; 0 as the theme has it
    int melodyProgram;
    int register_; ///< the octave where the melody's middle comes to lie, as a pitch
    int doubleProgram; ///< plays the melody an octave higher, too; -1 for nobody
    std::array<Backing, 4> backing;
    std::size_t backingCount;
};

const std::array<Scoring, 4> &scorings()
{
    static const std::array<Scoring, 4> all{{
        {"a band", 0, grandPiano, 72, -1,
            {{{{"Guitar", guitar, false, 90}, Figure::Comping, 52, 62},
                {{"Bass", fingeredBass, false, 100}, Figure::Bass, 40, 84},
                {{"Drums", 0, true, 90}, Figure::Drums, 48, 70}}},
            3},
        {"a lullaby", 58, musicBox, 84, -1,
            {{{{"Harp", harp, false, 85}, Figure::Rocking, 52, 44},
                {{"Strings", strings, false, 60}, Figure::Sustained, 55, 36}}},
            2},
        {"a video game", 168, squareLead, 79, -1,
            {{{{"Arpeggio", sawLead, false, 60}, Figure::Pulse, 60, 54},
                {{"Bass", synthBass, false, 95}, Figure::Bass, 40, 88},
                {{"Drums", 0, true, 80}, Figure::Drums, 48, 72}}},
            3},
        {"a film score", 76, frenchHorn, 65, strings,
            {{{{"Strings", strings, false, 100}, Figure::Sustained, 48, 70},
                {{"Choir", choir, false, 80}, Figure::Sustained, 60, 56},
                {{"Low strings", strings, false, 95}, Figure::March, 43, 72},
                {{"Timpani", timpaniProgram, false, 110}, Figure::Timpani, 48, 86}}},
            4},
    }};
    return all;
}

/// Octaves that bring the middle of a melody nearest to a pitch.
int octavesTo(const std::vector<Tone> &melody, int pitch)
{
    if (melody.empty())
        return 0;
    const auto [low, high] = std::ranges::minmax(melody, {}, &Tone::pitch);
    const int away = pitch - (low.pitch + high.pitch) / 2;
    return (away >= 0 ? away + 6 : away - 6) / 12;
}

} // namespace

Score arrange(const Score &theme, Arrangement arrangement)
{
    const Scoring &scoring = scorings()[static_cast<std::size_t>(arrangement)];
    Score score = theme;
    score.title =
        (theme.title.empty() ? "Your piece" : theme.title) + ", as " + std::string(scoring.name);
    score.tempo = scoring.tempo > 0 ? scoring.tempo : theme.tempo;
    score.parts = {{"Melody", scoring.melodyProgram, false, 115}};
    score.tones = theme.partTones(0);
    const int octaves = octavesTo(score.tones, scoring.register_);
    for (Tone &tone : score.tones)
        tone.pitch += 12 * octaves;
    if (scoring.doubleProgram >= 0) {
        score.parts.push_back({"Second melody", scoring.doubleProgram, false, 100});
        for (Tone tone : score.partTones(0)) {
            tone.pitch += 12;
            tone.part = 1;
            score.tones.push_back(tone);
        }
    }
    for (std::size_t i = 0; i < scoring.backingCount; ++i) {
        const Backing &backing = scoring.backing[i];
        const bool waltz = theme.metre.beats == 3 && backing.figure == Figure::Comping;
        accompany(score, backing.player, waltz ? Figure::Waltz : backing.figure, backing.lowest,
            backing.velocity);
    }
    return score;
}

std::string_view nameOf(Arrangement arrangement)
{
    return scorings()[static_cast<std::size_t>(arrangement)].name;
}

} // namespace kelo::engine
