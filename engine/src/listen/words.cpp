#include "listen/words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int largest = 9999;

constexpr std::array<std::string_view, 20> units{"zero", "one", "two", "three", "four", "five",
    "six", "seven", "eight", "nine", "ten", "eleven", "twelve", "thirteen", "fourteen", "fifteen",
    "sixteen", "seventeen", "eighteen", "nineteen"};
constexpr std::array<std::string_view, 10> tens{
    "", "", "twenty", "thirty", "forty", "fifty", "sixty", "seventy", "eighty", "ninety"};
constexpr std::array<std::string_view, 13> ordinals{"", "first", "second", "third", "fourth",
    "fifth", "sixth", "seventh", "eighth", "ninth", "tenth", "eleventh", "twelfth"};

/// The plain letters of U+00C0 to U+00FF; nobody types or recognises accents reliably.
constexpr std::string_view plainLetters =
    "aaaaaaaceeeeiiiidnooooo ouuuuytsaaaaaaaceeeeiiiidnooooo ouuuuyty";

std::string withoutAccents(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto low = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        if (text[i] == '\xc3' && low >= 0x80 && low < 0xc0) {
            plain += plainLetters[low - 0x80];
            ++i;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

bool isLetter(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

template <std::size_t Size>
std::optional<int> indexIn(const std::array<std::string_view, Size> &names, std::string_view word)
{
    const auto found = std::ranges::find(names, word);
    if (word.empty() || found == names.end())
        return {};
    return static_cast<int>(found - names.begin());
}

std::optional<int> digits(std::string_view word)
{
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    const bool whole = error == std::errc{} && end == word.data() + word.size();
    return whole && value <= largest ? std::optional(value) : std::nullopt;
}

} // namespace

std::vector<Word> wordsOf(std::string_view text)
{
    std::vector<Word> words;
    std::string word;
    bool opens = true;
    const auto end = [&] {
        while (!word.empty() && word.back() == '\'')
            word.pop_back();
        if (!word.empty())
            words.push_back({std::exchange(word, {}), std::exchange(opens, false)});
    };
    for (char c : withoutAccents(text)) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
        if (isLetter(c) || (c == '\'' && !word.empty())) {
            word += c;
            continue;
        }
        end();
        if (c == '.' || c == '?' || c == '!' || c == ';')
            opens = true;
    }
    end();
    return words;
}

std::optional<SpokenNumber> numberAt(std::span<const Word> words)
{
    int total = 0; // closed by "hundred" or "thousand"
    int open = 0; // still growing
    int room = largest; // what may follow must be smaller: "twenty five", not "five twenty"
    std::size_t taken = 0;
    std::size_t last = 0; // words up to the last that was part of the number
    const auto text = [&](std::size_t at) {
        return at < words.size() ? std::string_view(words[at].text) : std::string_view{};
    };
    if (const auto value = digits(text(0)))
        return SpokenNumber{*value, 1};
    if (text(0) == "a" && (text(1) == "hundred" || text(1) == "thousand")) {
        open = 1;
        taken = 1;
    } else if (text(0) == "hundred" && text(1) == "and") {
        open = 1;
    }
    for (; taken < words.size(); ++taken) {
        const std::string_view word = text(taken);
        const auto small = indexIn(units, word);
        const auto ordinal = indexIn(ordinals, word);
        const auto ten = indexIn(tens, word);
        const int scale = word == "hundred" ? 100 : word == "thousand" ? 1000 : 0;
        if (word == "and" && last > 0 && open == 0) {
            continue;
        } else if (scale > 0 && open > 0 && open * scale <= largest - total) {
            total += open * scale;
            open = 0;
            room = scale;
        } else if (const int value = small ? *small
                       : ordinal           ? *ordinal
                       : ten               ? *ten * 10
                                           : -1;
                   value >= 0 && value < room) {
            open += value;
            room = ten && value > 0 ? 10 : 0;
        } else {
            break;
        }
        last = taken + 1;
        const std::string_view next = text(last);
        if (room > 0 || next == "hundred" || next == "thousand")
            continue;
        if (total == 0 && open > 0 && open < 10 && indexIn(tens, next)) {
            total = open * 100; // "one twenty", as tempos are said
            open = 0;
            room = 100;
            continue;
        }
        break;
    }
    if (last == 0)
        return {};
    return SpokenNumber{total + open, last};
}

std::string numberInWords(int value)
{
    if (value >= 0 && value < static_cast<int>(units.size()))
        return std::string(units[static_cast<std::size_t>(value)]);
    if (value > 0 && value < 100) {
        std::string text(tens[static_cast<std::size_t>(value / 10)]);
        if (value % 10 > 0)
            text.append(" ").append(units[static_cast<std::size_t>(value % 10)]);
        return text;
    }
    return std::to_string(value);
}

std::string ordinalInWords(int value)
{
    if (value > 0 && value < static_cast<int>(ordinals.size()))
        return std::string(ordinals[static_cast<std::size_t>(value)]);
    const int last = value % 10;
    const bool teen = value / 10 % 10 == 1;
    return std::to_string(value)
        + (teen || last == 0 || last > 3 ? "th"
                : last == 1              ? "st"
                : last == 2              ? "nd"
                                         : "rd");
}

std::string capitalised(std::string text)
{
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

} // namespace kelo::engine
