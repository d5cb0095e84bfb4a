#include "composing/transcription.h"

#include "theory/pitch_names.h"
#include "theory/pulse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int grid = ticksPerQuarter / 4;
constexpr int mostBars = 64;
constexpr int percussionChannel = 9;
constexpr int longest = 96; ///< ticks that one note lasts

/// The length nearest to this that one note has.
int plain(int ticks)
{
    constexpr std::array<int, 8> lengths{longest, 72, 48, 36, 24, 18, 12, 6};
    return *std::ranges::min_element(
        lengths, {}, [ticks](int length) { return std::abs(length - ticks); });
}

/// The highest note at a time, cut where the next begins; small gaps are closed.
std::vector<Tone> melodyOf(std::vector<Tone> tones)
{
    std::ranges::stable_sort(tones, [](const Tone &a, const Tone &b) {
        return a.at != b.at ? a.at < b.at : a.pitch > b.pitch;
    });
    std::vector<Tone> melody;
    for (const Tone &tone : tones) {
        // A lower note under one that sounds is its accompaniment.
        const bool under = !melody.empty() && tone.at < melody.back().at + melody.back().length
            && tone.pitch < melody.back().pitch - 6;
        if (!melody.empty() && (melody.back().at == tone.at || under))
            continue;
        melody.push_back(tone);
    }
    for (std::size_t i = 0; i < melody.size(); ++i) {
        Tone &tone = melody[i];
        const bool last = i + 1 == melody.size();
        const int room = last ? longest : melody[i + 1].at - tone.at;
        tone.length = !last && tone.length * 2 >= room ? room : std::min(plain(tone.length), room);
    }
    return melody;
}

int snapped(double ticks)
{
    return grid * static_cast<int>(std::lround(ticks / grid));
}

Score scoreOf(std::span<const Note> notes, double start, double quarter)
{
    Score score;
    score.parts = {{"Melody"}};
    std::vector<Tone> tones;
    for (const Note &note : notes) {
        if (note.channel == percussionChannel)
            continue;
        const int at = snapped((note.at - start) / quarter * ticksPerQuarter);
        const int length = std::max(grid, snapped(note.duration / quarter * ticksPerQuarter));
        tones.push_back({std::max(at, 0), length, note.pitch, note.velocity, 0});
    }
    score.tones = melodyOf(std::move(tones));
    score.tempo = std::clamp(static_cast<int>(std::lround(60 / quarter)), 30, 300);
    return score;
}

/// How well a chord explains the notes of a bar.
double fit(const Score &theme, const Harmony &harmony, int bar)
{
    const int from = bar * theme.barTicks();
    double sum = 0;
    for (const Tone &tone : theme.tones) {
        const int begins = std::max(tone.at, from);
        const int ends = std::min(tone.at + tone.length, from + theme.barTicks());
        if (begins >= ends)
            continue;
        // What begins a bar counts for more, and so does what ends the theme.
        const bool stressed = tone.at == from || &tone == &theme.tones.back();
        const double weight = (ends - begins) + (stressed ? ticksPerQuarter : 0);
        sum += contains(harmony, tone.pitch) ? weight : -0.6 * weight;
    }
    return sum / ticksPerQuarter;
}

/// How well one degree leads to another.
double leads(int from, int to)
{
    constexpr std::array<std::array<double, 6>, 6> ways{{
        {0.2, 0.5, 0.2, 0.9, 0.8, 0.6}, // I
        {0.1, 0.0, 0.0, 0.2, 1.0, 0.2}, // ii
        {0.1, 0.3, 0.0, 0.6, 0.2, 0.8}, // iii
        {0.8, 0.5, 0.0, 0.1, 0.9, 0.1}, // IV
        {1.0, 0.0, 0.1, 0.2, 0.2, 0.6}, // V
        {0.2, 0.7, 0.2, 0.7, 0.5, 0.0}, // vi
    }};
    return ways[static_cast<std::size_t>(from)][static_cast<std::size_t>(to)];
}

std::string lengthInWords(int ticks)
{
    struct Value {
        int ticks;
        std::string_view name;
    };
    constexpr std::array<Value, 8> values{
        {{96, "whole note"}, {72, "dotted half"}, {48, "half"}, {36, "dotted quarter"},
            {24, "quarter"}, {18, "dotted eighth"}, {12, "eighth"}, {6, "sixteenth"}}};
    std::string words;
    for (const Value &value : values) {
        while (ticks >= value.ticks) {
            words += (words.empty() ? "" : " tied to a ") + std::string(value.name);
            ticks -= value.ticks;
        }
    }
    return words;
}

} // namespace

Score transcribe(std::span<const Note> notes, const Score *like)
{
    const Pulse pulse = pulseOf(notes, like ? 60.0 / like->tempo : 0);
    Score score = scoreOf(notes, pulse.start, pulse.period);
    score.key = tonalityOf(notes);
    score.metre = like ? like->metre : Metre{pulse.beats, 4};
    return score;
}

Score themeOf(const Piece &piece, std::string title)
{
    Score score;
    if (piece.bars.size() > 2) {
        const double bar = piece.bars[2] - piece.bars[1];
        const int unit = piece.beats % 3 == 0 && piece.beats > 3 ? 8 : 4;
        const Metre metre{piece.beats, unit};
        const double quarter = bar / quartersIn(metre);
        score = scoreOf(piece.notes, piece.bars[1] - bar, quarter); // an upbeat fills its bar
        score.metre = metre;
        score.key = tonalityOf(piece.notes);
    } else {
        score = transcribe(piece.notes);
    }
    std::erase_if(
        score.tones, [&](const Tone &tone) { return tone.at >= mostBars * score.barTicks(); });
    score.title = std::move(title);
    harmonise(score);
    return score;
}

void harmonise(Score &theme)
{
    constexpr int degrees = 6;
    const int bars = std::max(theme.bars(), 1);
    std::vector<std::array<double, degrees>> best(static_cast<std::size_t>(bars));
    std::vector<std::array<int, degrees>> from(static_cast<std::size_t>(bars));
    for (int bar = 0; bar < bars; ++bar) {
        const auto i = static_cast<std::size_t>(bar);
        for (int degree = 0; degree < degrees; ++degree) {
            const auto d = static_cast<std::size_t>(degree);
            double value = fit(theme, triadOn(theme.key, degree), bar);
            value += (bar == 0 || bar == bars - 1) && degree == 0 ? 1.5 : 0;
            value += bar == bars - 2 && degree == 4 ? 0.8 : 0;
            double before = bar == 0 ? 0 : -std::numeric_limits<double>::infinity();
            for (int last = 0; bar > 0 && last < degrees; ++last) {
                const double way =
                    best[i - 1][static_cast<std::size_t>(last)] + leads(last, degree);
                if (way > before) {
                    before = way;
                    from[i][d] = last;
                }
            }
            best[i][d] = value + before;
        }
    }
    theme.harmony.assign(static_cast<std::size_t>(bars), {});
    int degree = static_cast<int>(std::ranges::max_element(best.back()) - best.back().begin());
    for (auto i = static_cast<std::size_t>(bars); i-- > 0;) {
        theme.harmony[i] = triadOn(theme.key, degree);
        degree = from[i][static_cast<std::size_t>(degree)];
    }
}

void append(Score &theme, const Score &more)
{
    const int start = theme.bars() * theme.barTicks();
    for (Tone tone : more.tones) {
        tone.at += start;
        theme.tones.push_back(tone);
    }
}

std::string readBack(const Score &theme)
{
    const Spelling spelling = spellingOf(theme.key);
    std::string text = "In " + nameOf(theme.key) + ", " + std::to_string(theme.metre.beats) + " "
        + std::to_string(theme.metre.unit) + ".";
    int bar = -1;
    for (const Tone &tone : theme.tones) {
        if (const int next = tone.at / theme.barTicks(); next != bar) {
            text += (bar < 0 ? " Bar " : ". Bar ") + std::to_string(next + 1) + ": ";
            bar = next;
        } else {
            text += ", ";
        }
        text += pitchName(tone.pitch, spelling) + " " + lengthInWords(tone.length);
    }
    return text + ".";
}

} // namespace kelo::engine
