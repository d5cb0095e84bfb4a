#pragma once

#include <string>
#include <string_view>

namespace kelo::engine {

/// How a recogniser's spelling of an unknown name may differ from the name: the sounds of both,
/// one letter a sound, are compared, and each kind of mistake has its price.

/// The sounds of a word in plain letters: "kelo" and "keylow" are both "kilo". Vowels are told
/// apart by where they are formed only.
[[nodiscard]] std::string soundsOf(std::string_view word);

/// The cheapest way from the sounds of one word to another's; 0 for the same sounds, 1 for one
/// consonant that is missing or of another kind.
[[nodiscard]] double soundDistance(std::string_view word, std::string_view other);

/// The same for what `soundsOf` made of them.
[[nodiscard]] double distanceOfSounds(std::string_view sounds, std::string_view others);

/// A spelling that may well be meant for `name`. The limit grows with the name's length.
[[nodiscard]] bool soundsLike(std::string_view word, std::string_view name);

} // namespace kelo::engine
