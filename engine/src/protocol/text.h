#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// The longest text that is said or shown in one piece, in bytes.
inline constexpr std::size_t longestText = 4000;

/// `text` as valid UTF-8 on one line: bytes that are no UTF-8 become "?", control characters
/// spaces, the ends are trimmed and what exceeds `most` bytes is cut off at a whole character.
[[nodiscard]] std::string oneLine(std::string_view text, std::size_t most = longestText);

/// `text` with the letters A to Z small.
[[nodiscard]] std::string lowered(std::string text);

/// The offset in UTF-16 code units of every character of `text` (valid UTF-8), and of its end:
/// one entry more than there are characters.
[[nodiscard]] std::vector<int> utf16Offsets(std::string_view text);

} // namespace kelo::engine
