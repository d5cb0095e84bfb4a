#include "setup/voice_log.h"

#include <cstdint>
#include <fstream>
#include <system_error>

namespace kelo::engine {

void prepareVoiceLog(const std::filesystem::path &folder)
{
    constexpr std::uintmax_t largest = 1 << 20;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const auto log = folder / "voice-log.txt";
    if (const auto size = std::filesystem::file_size(log, error); !error && size > largest)
        std::filesystem::rename(log, folder / "voice-log.old.txt", error);
    std::ofstream(log, std::ios::app).flush();
}

} // namespace kelo::engine
