#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string_view>

namespace kelo::engine {

/// Puts `text` in the place of a file. The file's name is only ever that of a whole file, whenever
/// the machine stops. False where the disk would not have it. `mode`: who may read it, before the
/// system's mask; by itself nobody else.
bool replaceFile(const std::filesystem::path &path, std::string_view text, mode_t mode = 0600);

} // namespace kelo::engine
