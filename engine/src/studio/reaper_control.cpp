#include "studio/reaper_control.h"

#include "log/log.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t longestStatus = 200;

/// In the order of StudioCommand, as the script has them.
constexpr std::array<std::string_view, 12> names{"play", "stop", "record", "start", "next_track",
    "previous_track", "arm", "undo", "add_marker", "next_marker", "faster", "slower"};

} // namespace

ReaperControl::ReaperControl(std::filesystem::path folder, std::uint64_t firstNumber)
    : folder_(std::move(folder))
    , number_(firstNumber)
{
}

bool ReaperControl::send(StudioCommand command)
{
    if (!connected_)
        return false;
    waiting_.push_back(std::to_string(number_++) + ' '
        + std::string(names[static_cast<std::size_t>(command)]) + '\n');
    if (waiting_.size() > mostWaiting)
        waiting_.pop_front();
    const auto file = folder_ / "kelo-commands";
    const auto draft = folder_ / "kelo-commands.new";
    {
        std::ofstream out(draft, std::ios::binary | std::ios::trunc);
        for (const std::string &line : waiting_)
            out << line;
        out.close();
        if (!out) {
            log(LogLevel::Warning, "studio", "cannot write to " + folder_.string());
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(draft, file, error);
    return !error;
}

/// The number that the script wrote last; empty where there is none.
std::string ReaperControl::beat() const
{
    std::ifstream file(folder_ / "kelo-status", std::ios::binary);
    std::array<char, longestStatus> text{};
    file.read(text.data(), text.size());
    std::istringstream words(std::string(text.data(), static_cast<std::size_t>(file.gcount())));
    std::string name;
    int version = 0;
    std::string number;
    words >> name >> version >> number;
    return name == "kelo-bridge" && version == 1 ? number : std::string();
}

void ReaperControl::advance(double now)
{
    if (now < nextLook_)
        return;
    nextLook_ = now + lookEvery;
    const std::string current = beat();
    // What lies there from before says nothing.
    if (std::exchange(looked_, true) && !current.empty() && current != lastBeat_) {
        beatAt_ = now;
        connected_ = true;
    }
    lastBeat_ = current;
    connected_ = connected_ && now - beatAt_ < patience;
}

} // namespace kelo::engine
