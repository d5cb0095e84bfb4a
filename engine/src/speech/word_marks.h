#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// Where a spoken word stands in its text, in UTF-16 units, and when it begins, in seconds
/// from the utterance's first sample.
struct WordMark {
    int from = 0;
    int length = 0;
    double at = 0;

    friend bool operator==(const WordMark &, const WordMark &) = default;
};

/// Turns the synthesiser's word events, which split "35" and "I'm" and may reach beyond the
/// word, into whole words as a reader sees them, each once and in order.
class WordMarks {
public:
    /// `text`: one line of valid UTF-8.
    explicit WordMarks(std::string_view text);

    /// The word around a character (counted from 0), or nothing if it has begun already.
    [[nodiscard]] std::optional<WordMark> begin(int character, double at);

private:
    std::string letters_; ///< one byte a character: itself, or "x" for what is beyond ASCII
    std::vector<int> offsets_;
    int told_ = 0; ///< characters up to the end of the last word
};

} // namespace kelo::engine
