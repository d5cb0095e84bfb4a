#include "piano/command_keys.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr int lowestTop = 36;

bool isBlack(int pitch)
{
    return (0b010101001010 >> (pitch % 12) & 1) != 0;
}

} // namespace

void CommandKeys::setTop(int top)
{
    int pitch = std::clamp(top, lowestTop, 127);
    for (int &key : keys_) {
        while (isBlack(pitch))
            --pitch;
        key = pitch--;
    }
}

std::optional<int> CommandKeys::place(int pitch) const
{
    const auto found = std::ranges::find(keys_, pitch);
    if (found == keys_.end())
        return {};
    return static_cast<int>(found - keys_.begin());
}

} // namespace kelo::engine
