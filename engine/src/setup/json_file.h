#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>

namespace kelo::engine {

/// The object that a file holds; null where there is none, or it is no JSON, or absurdly large.
[[nodiscard]] nlohmann::json readJsonFile(const std::filesystem::path &path);

/// Writes it whole or not at all, and the folder with it; false where the disk would not have it.
bool writeJsonFile(const std::filesystem::path &path, const nlohmann::json &json);

} // namespace kelo::engine
