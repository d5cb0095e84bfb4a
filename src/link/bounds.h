#pragma once

#include <QString>

#include <cstddef>

/// How much of what the engine tells is kept: of each list, and of each text that is drawn, named,
/// logged or announced. This is the one place where that is decided; what reads the link's state
/// can rely on it. A real engine stays far below all but the first two; one gone wild must neither
/// fill memory nor hold up the display.
namespace kelo::bounds {

// Lists, in items
inline constexpr qsizetype ripples = 400; ///< in each of the two lists
inline constexpr qsizetype spoken = 60; ///< voice-log lines that a sentence leaves
inline constexpr qsizetype logged = 10'000; ///< voice-log lines while the assistant says nothing
inline constexpr qsizetype heldKeys = 400; ///< at once, in each of the two sets
inline constexpr qsizetype buttons = 128; ///< keys that act as command keys
inline constexpr qsizetype lessons = 100; ///< jazz lessons on offer
inline constexpr qsizetype phrases = 5'000; ///< that the recogniser is to expect
inline constexpr std::size_t rollNotes = 1'000'000;
inline constexpr std::size_t voiceFrames = 36'000; ///< ten minutes of one utterance
inline constexpr qsizetype settings = 256; ///< keys in the user's settings

// Texts, in UTF-16 units
inline constexpr qsizetype sentence = 1'000; ///< what is said, by the assistant or to it
inline constexpr qsizetype updateNotes = 8'000;
inline constexpr qsizetype name =
    160; ///< of the assistant, the user, a lesson, a version, a phrase
inline constexpr qsizetype readout = 240; ///< a title, a mode, a device ...

/// The first `most` units of `text`, and no half of a character.
[[nodiscard]] inline QString bounded(QString text, qsizetype most)
{
    if (text.size() > most)
        text.truncate(text[most - 1].isHighSurrogate() ? most - 1 : most);
    return text;
}

} // namespace kelo::bounds
