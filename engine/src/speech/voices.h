#pragma once

#include <array>
#include <string_view>

namespace kelo::engine {

/// A voice: what it is called, and by eSpeak.
struct Voice {
    std::string_view name;
    const char *espeak;
};

inline constexpr std::array<Voice, 8> voices{{
    {"American", "en-us"},
    {"American, deep", "en-us+m7"},
    {"American, soft", "en-us+f5"},
    {"American woman", "en-us+f3"},
    {"British", "en"},
    {"British, northern", "en-gb-x-gbclan"},
    {"British woman", "en+f4"},
    {"Scottish", "en-gb-scotland"},
}};

/// How a voice speaks.
struct SpeechStyle {
    static constexpr int slowest = 120; ///< words a minute
    static constexpr int fastest = 400;

    int rate = 165; ///< words a minute
    int pitch = 50; ///< 0 to 100
};

} // namespace kelo::engine
