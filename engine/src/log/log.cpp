#include "log/log.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string>

namespace kelo::engine {

namespace {

constexpr std::array<std::string_view, 4> names{"debug", "info", "warning", "error"};
constexpr std::size_t longestText = 500;

std::atomic<LogLevel> &lowest()
{
    static std::atomic<LogLevel> level = LogLevel::Info;
    return level;
}

} // namespace

void log(LogLevel level, std::string_view room, std::string_view text)
{
    if (level < lowest())
        return;
    std::string line = "kelo-engine: ";
    line.append(names[static_cast<std::size_t>(level)]).append(": ").append(room).append(": ");
    line.append(text.substr(0, longestText));
    std::ranges::replace(line, '\n', ' ');
    line += '\n';
    // One call a line, so that threads do not write into each other's. Nobody may read it.
    static_cast<void>(!write(STDERR_FILENO, line.data(), line.size()));
}

void setLogLevel(std::string_view name)
{
    const auto found = std::ranges::find(names, name);
    lowest() = found == names.end() ? LogLevel::Info : static_cast<LogLevel>(found - names.begin());
}

} // namespace kelo::engine
