#pragma once

#include "songs/notation.h"

#include <vector>

namespace kelo::engine {

/// The pieces that are always there, from easy to hard. All are by composers long dead or
/// unknown.
[[nodiscard]] const std::vector<Sheet> &shippedSongs();

} // namespace kelo::engine
