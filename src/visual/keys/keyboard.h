#pragma once

#include <QString>

#include <array>

/// The 88 keys: which are white, where each lies, how wide a note on it is. Widths and places are
/// in the unit of the key width `keyWidth`, counted from the keyboard's left edge.
namespace kelo::keyboard {

inline constexpr int lowest = 21; ///< A0
inline constexpr int highest = 108; ///< C8
inline constexpr int whiteCount = 52;
inline constexpr double blackWidth = 0.6; ///< of a black key, in white ones
inline constexpr double blackLength = 0.62; ///< of a black key, in white ones

[[nodiscard]] constexpr bool contains(qint64 pitch)
{
    return pitch >= lowest && pitch <= highest;
}

/// 0 for C, 11 for B; for any pitch, however absurd.
[[nodiscard]] constexpr int pitchClass(qint64 pitch)
{
    return static_cast<int>((pitch % 12 + 12) % 12);
}

[[nodiscard]] constexpr bool isBlack(qint64 pitch)
{
    switch (pitchClass(pitch)) {
    case 1:
    case 3:
    case 6:
    case 8:
    case 10:
        return true;
    default:
        return false;
    }
}

/// Pitches of the white keys from left to right.
inline constexpr auto whites = [] {
    std::array<int, whiteCount> keys{};
    std::size_t count = 0;
    for (int pitch = lowest; pitch <= highest; ++pitch) {
        if (!isBlack(pitch))
            keys[count++] = pitch;
    }
    return keys;
}();

/// A black key lies between the white key `pitch` and the next one.
[[nodiscard]] constexpr bool hasBlackToRight(int pitch)
{
    return pitch < highest && isBlack(pitch + 1);
}

/// Number of the white key at `pitch`, or of the one to the left of a black key; 0 for pitches
/// that the keyboard does not have.
[[nodiscard]] int whiteIndex(qint64 pitch);

/// The middle of a key. Pitches that the keyboard does not have lie on its first white key.
[[nodiscard]] double centre(qint64 pitch, double keyWidth);

/// Width of anything that is drawn on a key: narrower than the key, so that neighbours part.
[[nodiscard]] constexpr double noteWidth(qint64 pitch, double keyWidth)
{
    return keyWidth * (isBlack(pitch) ? 0.56 : 0.84);
}

/// What is written on the command key at `place`: "1" to "8", then "H" and "K".
[[nodiscard]] QString commandKeyLabel(qsizetype place);

} // namespace kelo::keyboard
