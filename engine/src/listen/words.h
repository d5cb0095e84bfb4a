#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// A word as it was heard: lower case, without accents, letters, digits and apostrophes alone.
struct Word {
    std::string text;
    bool opens = false; ///< the first word, or the first after the end of a sentence

    friend bool operator==(const Word &, const Word &) = default;
};

[[nodiscard]] std::vector<Word> wordsOf(std::string_view text);

/// A number among words: "90", "ninety", "a hundred and twenty", "third".
struct SpokenNumber {
    int value = 0;
    std::size_t words = 0; ///< how many words it took

    friend bool operator==(const SpokenNumber &, const SpokenNumber &) = default;
};

/// The number that begins with the first of `words`, up to 9999.
[[nodiscard]] std::optional<SpokenNumber> numberAt(std::span<const Word> words);

/// "seven", "ninety five"; digits from 100 on.
[[nodiscard]] std::string numberInWords(int value);

/// With a capital letter at its beginning.
[[nodiscard]] std::string capitalised(std::string text);

/// "first" to "twelfth", then "13th" and so on.
[[nodiscard]] std::string ordinalInWords(int value);

} // namespace kelo::engine
