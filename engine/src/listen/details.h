#pragma once

#include "listen/request.h"
#include "listen/words.h"

#include <optional>
#include <span>
#include <string_view>

namespace kelo::engine {

/// A detail of a request and the words that say it.
template <typename Value> struct Detail {
    Value value;
    std::size_t at = 0;
    std::size_t words = 1;
};

/// "off", "without"; what is switched off wins over "on", which may only be a preposition.
[[nodiscard]] std::optional<Detail<bool>> switchIn(std::span<const Word> words);

/// "left hand", "both hands", "hands together".
[[nodiscard]] std::optional<Detail<Hands>> handsIn(std::span<const Word> words);

/// "bar three", "bars five to eight", "measure two".
[[nodiscard]] std::optional<Detail<BarRange>> barsIn(std::span<const Word> words);

/// "three four", "six eight time", "waltz time".
[[nodiscard]] std::optional<Detail<Metre>> metreIn(std::span<const Word> words);

/// "eighths", "in triplets": the parts of a beat.
[[nodiscard]] std::optional<Detail<int>> partsIn(std::span<const Word> words);

/// "middle c", "f sharp", "b flat three". The letter a alone is the article.
[[nodiscard]] std::optional<Detail<int>> pitchIn(std::span<const Word> words);

/// "d minor", "in the key of g".
[[nodiscard]] std::optional<Detail<Tonality>> keyIn(std::span<const Word> words);

/// "something sad".
[[nodiscard]] std::optional<Detail<Mood>> moodIn(std::span<const Word> words);

/// "next", "usb", "built in": which microphone, in the word that the display knows.
[[nodiscard]] std::optional<Detail<std::string_view>> microphoneIn(std::span<const Word> words);

/// "song nine": its place among the songs, from 0 on, whether there is one or not.
[[nodiscard]] std::optional<Detail<std::size_t>> songNumberIn(std::span<const Word> words);

/// A number that belongs to nothing above; "to" and "for" count after "song" and the like.
/// "This one" is no number, "half speed" is fifty.
[[nodiscard]] std::optional<Detail<int>> numberIn(std::span<const Word> words);

} // namespace kelo::engine
