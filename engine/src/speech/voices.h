#pragma once

#include <array>
#include <string_view>

namespace kelo::engine {

/// A way to speak: what it is called, eSpeak's voice and words a minute.
struct Voice {
    std::string_view name;
    const char *espeak;
    int speed;
};

inline constexpr std::array<Voice, 8> voices{{
    {"American", "en-us", 165},
    {"American, fast", "en-us", 230},
    {"American, slow", "en-us", 125},
    {"American woman", "en-us+f3", 165},
    {"British", "en-gb", 165},
    {"British, fast", "en-gb", 230},
    {"British woman", "en-gb+f4", 165},
    {"Scottish", "en-gb-scotland", 160},
}};

} // namespace kelo::engine
