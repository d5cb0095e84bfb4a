#pragma once

#include <QtGlobal>

#include <cstddef>

/// How much of what the engine tells is kept, list by list. A real engine stays far below all of
/// these but the first two; one gone wild must not fill memory.
namespace kelo::bounds {

inline constexpr qsizetype ripples = 400; ///< in each of the two lists
inline constexpr qsizetype spoken = 60; ///< voice-log lines that a sentence leaves
inline constexpr qsizetype logged = 10'000; ///< voice-log lines while the assistant says nothing
inline constexpr qsizetype heldKeys = 400; ///< at once, in each of the two sets
inline constexpr std::size_t rollNotes = 1'000'000;
inline constexpr std::size_t voiceFrames = 36'000; ///< ten minutes of one utterance
inline constexpr qsizetype settings = 256; ///< keys in the user's settings

} // namespace kelo::bounds
