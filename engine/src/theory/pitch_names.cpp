#include "theory/pitch_names.h"

#include <array>
#include <string_view>

namespace kelo::engine {

std::string pitchName(int pitch, Spelling spelling)
{
    using Names = std::array<std::string_view, 12>;
    constexpr Names sharps{
        "C", "C sharp", "D", "D sharp", "E", "F", "F sharp", "G", "G sharp", "A", "A sharp", "B"};
    constexpr Names flats{
        "C", "D flat", "D", "E flat", "E", "F", "G flat", "G", "A flat", "A", "B flat", "B"};
    constexpr Names mixed{
        "C", "C sharp", "D", "E flat", "E", "F", "F sharp", "G", "A flat", "A", "B flat", "B"};
    const Names &names = spelling == Spelling::Sharps ? sharps
        : spelling == Spelling::Flats                 ? flats
                                                      : mixed;
    return std::string(names[static_cast<std::size_t>((pitch % 12 + 12) % 12)]);
}

std::string pitchNames(std::span<const int> pitches, Spelling spelling)
{
    std::string text;
    for (std::size_t i = 0; i < pitches.size(); ++i) {
        const bool last = i + 1 == pitches.size();
        text += i == 0 ? "" : last ? " and " : ", ";
        text += pitchName(pitches[i], spelling);
    }
    return text;
}

} // namespace kelo::engine
