#pragma once

#include <cstdint>
#include <string_view>

namespace kelo::engine {

/// Who plays a note of a piece, or what is to be practised of it.
enum class Hands : std::uint8_t { Both, Right, Left };

/// "both", "right" or "left".
[[nodiscard]] constexpr std::string_view nameOf(Hands hands)
{
    return hands == Hands::Both ? "both" : hands == Hands::Right ? "right" : "left";
}

/// The ones that come next when they are changed one by one.
[[nodiscard]] constexpr Hands nextOf(Hands hands)
{
    return hands == Hands::Both ? Hands::Right : hands == Hands::Right ? Hands::Left : Hands::Both;
}

} // namespace kelo::engine
