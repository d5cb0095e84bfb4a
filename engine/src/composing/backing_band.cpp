#include "composing/backing_band.h"

#include "composing/accompaniment.h"

#include <string>

namespace kelo::engine {

std::optional<Harmony> chordFrom(std::string_view symbol)
{
    constexpr std::string_view letters = "C D EF G A B";
    const auto root = symbol.empty() ? std::string_view::npos : letters.find(symbol.front());
    if (root == std::string_view::npos || symbol.front() == ' ')
        return {};
    symbol.remove_prefix(1);
    int shift = 0;
    if (symbol.starts_with('#') || symbol.starts_with('b')) {
        shift = symbol.front() == '#' ? 1 : -1;
        symbol.remove_prefix(1);
    }
    const bool minor = symbol.starts_with('m');
    return Harmony{(static_cast<int>(root) + shift + 12) % 12, minor ? 3 : 4, 7};
}

Score jazzBand(std::string_view chords, int tempo, int choruses)
{
    Score score;
    score.title = "The band";
    score.tempo = tempo;
    score.parts.clear();
    std::vector<Harmony> chorus;
    while (!chords.empty()) {
        const auto end = std::min(chords.find(' '), chords.size());
        if (const auto harmony = chordFrom(chords.substr(0, end)))
            chorus.push_back(*harmony);
        chords.remove_prefix(std::min(end + 1, chords.size()));
    }
    for (int i = 0; i < choruses; ++i)
        score.harmony.insert(score.harmony.end(), chorus.begin(), chorus.end());
    accompany(score, {"Bass", 32, false, 105}, Figure::WalkingBass, 40, 82);
    accompany(score, {"Drums", 0, true, 85}, Figure::SoftDrums, 48, 60);
    return score;
}

} // namespace kelo::engine
