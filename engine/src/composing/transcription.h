#pragma once

#include "composing/score.h"

#include <span>

namespace kelo::engine {

/// What was played freely, as a melody in bars: tempo, metre and key are found, notes put on the
/// grid of sixteenths. `like`, where there is one, gives the tempo and the metre.
[[nodiscard]] Score transcribe(std::span<const Note> notes, const Score *like = nullptr);

/// The melody of a piece that has bars already, or of one that was played freely.
[[nodiscard]] Score themeOf(const Piece &piece, std::string title);

/// Gives each bar of the theme the chord that fits it best and leads on to the next, to a close.
void harmonise(Score &theme);

/// Adds `more` from the next bar on.
void append(Score &theme, const Score &more);

/// The notes in words: "Bar one: C quarter, E quarter."
[[nodiscard]] std::string readBack(const Score &theme);

} // namespace kelo::engine
