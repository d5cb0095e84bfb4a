#pragma once

#include <filesystem>
#include <string_view>

namespace kelo::engine {

/// Puts `text` in the place of a file. The file's name is only ever that of a whole file, whenever
/// the machine stops. False where the disk would not have it.
bool replaceFile(const std::filesystem::path &path, std::string_view text);

} // namespace kelo::engine
