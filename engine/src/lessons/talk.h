#pragma once

#include <cstdint>

namespace kelo::engine {

/// How much a teacher says: all; only what is wrong or changes; or nothing that a sound tells, so
/// that words come only when they are asked for.
enum class Talk : std::uint8_t { All, Changes, Sounds };

/// What is judged besides the right keys, where it is asked for.
struct Attention {
    bool loudness = false;
    bool legato = false;
};

} // namespace kelo::engine
