#pragma once

#include <string>

namespace kelo::engine {

/// What a song answers to.
struct SongName {
    std::string title;
    std::string composer;
};

} // namespace kelo::engine
