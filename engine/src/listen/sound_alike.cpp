#include "listen/sound_alike.h"

#include <algorithm>
#include <vector>

namespace kelo::engine {

namespace {

constexpr std::string_view vowels = "aio";

// Prices, measured over what a recogniser made of seven names in four voices.
constexpr double otherVowel = 0.3;
constexpr double lostVowel = 0.6;
constexpr double kindredConsonant = 0.5;
constexpr double otherConsonant = 1.0;
constexpr double allowedPerSound = 0.16;

bool isVowel(char sound)
{
    return vowels.find(sound) != std::string_view::npos;
}

/// The vowel of a run of vowel letters: "ee", "ie" and "y" are an i, "oo", "ou" and "ew" an o.
char vowelOf(std::string_view run)
{
    if (run.find_first_of("ou") != std::string_view::npos && run.front() != 'i')
        return 'o';
    return run.front() == 'a' && run.size() == 1 ? 'a' : 'i';
}

/// Consonants that differ in voice or hardly at all.
bool kindred(char a, char b)
{
    constexpr std::string_view pairs[] = {"bp", "dt", "gk", "fv", "mn", "lr", "sz", "sS", "tT"};
    return std::ranges::any_of(pairs, [&](std::string_view pair) {
        return (pair[0] == a && pair[1] == b) || (pair[0] == b && pair[1] == a);
    });
}

double lost(char sound)
{
    return isVowel(sound) ? lostVowel : sound == 'h' ? kindredConsonant : otherConsonant;
}

double replaced(char a, char b)
{
    if (a == b)
        return 0;
    if (isVowel(a) && isVowel(b))
        return otherVowel;
    return kindred(a, b) ? kindredConsonant : otherConsonant;
}

} // namespace

std::string soundsOf(std::string_view word)
{
    std::string sounds;
    const auto add = [&](char sound) {
        if (sounds.empty() || sounds.back() != sound)
            sounds += sound;
    };
    const auto at = [&](std::size_t i) { return i < word.size() ? word[i] : '\0'; };
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char c = word[i];
        const char next = at(i + 1);
        constexpr std::string_view vowelLetters = "aeiouyw";
        if (c != 'w' && (c != 'y' || i > 0) && vowelLetters.find(c) != std::string_view::npos) {
            const auto end = std::min(word.find_first_not_of("aeiouyw", i), word.size());
            const std::string_view run = word.substr(i, end - i);
            const bool silent = run == "e" && end == word.size() && i > 1;
            if (!silent)
                add(vowelOf(run));
            i = end - 1;
        } else if (next == 'h' && (c == 'p' || c == 's' || c == 'c' || c == 't')) {
            add(c == 'p' ? 'f' : c == 't' ? 'T' : 'S');
            ++i;
        } else if (c == 'c' || c == 'q') {
            const bool soft = c == 'c' && (next == 'e' || next == 'i' || next == 'y');
            add(soft ? 's' : 'k');
            i += next == 'k' || (c == 'q' && next == 'u') ? 1 : 0;
        } else if (c == 'x') {
            add('k');
            add('s');
        } else if (c == 'h') {
            if (i == 0)
                add('h');
        } else if (c == 'r') {
            if (vowelLetters.find(next) != std::string_view::npos)
                add('r'); // else it colours the vowel before it, and many don't say it
        } else if (c >= 'a' && c <= 'z') {
            add(c == 'j' ? 'S' : c);
        }
    }
    return sounds;
}

double soundDistance(std::string_view word, std::string_view other)
{
    return distanceOfSounds(soundsOf(word), soundsOf(other));
}

double distanceOfSounds(std::string_view a, std::string_view b)
{
    std::vector<double> row(b.size() + 1);
    for (std::size_t j = 1; j <= b.size(); ++j)
        row[j] = row[j - 1] + lost(b[j - 1]);
    for (const char sound : a) {
        double diagonal = row[0];
        row[0] += lost(sound);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const double cheapest = std::min({row[j] + lost(sound), row[j - 1] + lost(b[j - 1]),
                diagonal + replaced(sound, b[j - 1])});
            diagonal = row[j];
            row[j] = cheapest;
        }
    }
    return row.back();
}

bool soundsLike(std::string_view word, std::string_view name)
{
    const double allowed = allowedPerSound * static_cast<double>(soundsOf(name).size());
    return soundDistance(word, name) <= allowed;
}

} // namespace kelo::engine
