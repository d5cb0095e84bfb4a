#pragma once

#include <string>

namespace kelo::engine {

/// Braille cells, each as Unicode has it, from U+2800 (empty) to U+283F.
using Cells = std::u32string;

inline constexpr char32_t emptyCell = U'⠀';

/// The same in UTF-8.
[[nodiscard]] std::string utf8Of(const Cells &cells);

/// The same in the characters that embossers and braille displays read from a `.brf` file, North
/// American ASCII braille.
[[nodiscard]] std::string brfOf(const Cells &cells);

/// A text in uncontracted braille; what has no letter or figure is left out.
[[nodiscard]] Cells cellsOfText(const std::string &text);

/// The figures of a number in the upper part of the cell, as after a number sign, or lowered.
[[nodiscard]] Cells upperFigures(int number);
[[nodiscard]] Cells lowerFigures(int number);

} // namespace kelo::engine
