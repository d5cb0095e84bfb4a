#include "written/note_value.h"

#include "music/written.h"

#include <array>
#include <cmath>
#include <limits>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr int longestValue = 1; ///< a whole note
constexpr int shortestValue = 128;

constexpr int lengthOf(int value, int dots, bool triplet)
{
    int length = 4 * writtenQuarter / value;
    length = dots == 1 ? length * 3 / 2 : dots == 2 ? length * 7 / 4 : length;
    return triplet ? length * 2 / 3 : length;
}

/// Calls `take` for each value there is, the longest first, plain ones before the others.
template <typename Take> void everyValue(Take take)
{
    for (int value = longestValue; value <= shortestValue; value *= 2) {
        for (int dots = 0; dots <= 2; ++dots)
            take(NoteValue{value, dots, false});
        if (value > 1)
            take(NoteValue{value, 0, true});
    }
}

std::string_view plainName(int value)
{
    constexpr std::array<std::string_view, 8> names{"whole note", "half", "quarter", "eighth",
        "sixteenth", "thirty-second", "sixty-fourth", "128th"};
    std::size_t index = 0;
    while (1 << index < value)
        ++index;
    return names[index];
}

} // namespace

NoteValue valueOf(int length)
{
    NoteValue found;
    everyValue([&](const NoteValue &each) {
        if (found.value == 0 && lengthOf(each.value, each.dots, each.triplet) == length)
            found = each;
    });
    return found;
}

int nearestValue(double length)
{
    int best = writtenQuarter / 4;
    double off = std::numeric_limits<double>::infinity();
    everyValue([&](const NoteValue &each) {
        const int exact = lengthOf(each.value, each.dots, each.triplet);
        constexpr double unusual = 0.1; // a plain value unless another one is clearly nearer
        const double ratio = std::abs(std::log(std::max(length, 1.0) / exact))
            + (each.dots == 2 || each.triplet ? unusual : 0);
        if (each.value <= 32 && ratio < off) {
            off = ratio;
            best = exact;
        }
    });
    return best;
}

std::string nameOf(int length, int beat)
{
    const NoteValue value = valueOf(length);
    if (value.value != 0) {
        const std::string_view dots = value.dots == 2 ? "double dotted "
            : value.dots == 1                         ? "dotted "
                                                      : "";
        return std::string(dots) + (value.triplet ? "triplet " : "")
            + std::string(plainName(value.value));
    }
    const int whole = length / beat;
    const int quarters = (length % beat * 4 + beat / 2) / beat;
    constexpr std::array<std::string_view, 4> parts{"", "a quarter", "a half", "three quarters"};
    if (quarters == 0 || quarters == 4)
        return std::to_string(whole + quarters / 4) + " beats";
    const std::string part(parts[static_cast<std::size_t>(quarters)]);
    return whole == 0 ? part + " beat" : std::to_string(whole) + " and " + part + " beats";
}

Spelt spelt(int pitch, Spelling spelling)
{
    constexpr std::array<Spelt, 12> sharps{{{0, 0}, {0, 1}, {1, 0}, {1, 1}, {2, 0}, {3, 0}, {3, 1},
        {4, 0}, {4, 1}, {5, 0}, {5, 1}, {6, 0}}};
    constexpr std::array<Spelt, 12> flats{{{0, 0}, {1, -1}, {1, 0}, {2, -1}, {2, 0}, {3, 0},
        {4, -1}, {4, 0}, {5, -1}, {5, 0}, {6, -1}, {6, 0}}};
    const auto index = static_cast<std::size_t>((pitch % 12 + 12) % 12);
    const bool mixedFlat = index == 3 || index == 8 || index == 10;
    const bool flat = spelling == Spelling::Flats || (spelling == Spelling::Mixed && mixedFlat);
    return flat ? flats[index] : sharps[index];
}

} // namespace kelo::engine
