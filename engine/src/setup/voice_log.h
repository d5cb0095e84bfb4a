#pragma once

#include <filesystem>

namespace kelo::engine {

/// Makes sure that there is a "voice-log.txt" to write to, and that it stays small: one of more
/// than a mebibyte becomes "voice-log.old.txt".
void prepareVoiceLog(const std::filesystem::path &folder);

} // namespace kelo::engine
