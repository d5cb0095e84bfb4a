#pragma once

#include "music/read_fault.h"

#include <cstdint>
#include <span>
#include <variant>
#include <vector>

namespace kelo::engine {

/// It begins like a zip archive, which a compressed score (.mxl) is.
[[nodiscard]] bool isPackage(std::span<const std::uint8_t> bytes);

/// The score in a compressed score: what its container names, or else its first XML file. Never
/// unpacks more than the largest score, whatever the archive claims.
[[nodiscard]] std::variant<std::vector<std::uint8_t>, ReadFault> unpackScore(
    std::span<const std::uint8_t> bytes);

} // namespace kelo::engine
