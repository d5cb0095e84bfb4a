#include "setup/sound_queue.h"

#include "setup/json_file.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace kelo::engine {

namespace {

constexpr const char *field = "queue";
constexpr double shrinking = 0.9;
constexpr double absurd = 1; ///< seconds

} // namespace

SoundQueue::SoundQueue(std::filesystem::path file)
    : file_(std::move(file))
{
    const nlohmann::json json = readJsonFile(file_);
    if (!json.contains(field) || !json[field].is_number())
        return;
    const double kept = json[field].get<double>();
    if (!(kept > 0 && kept < absurd))
        return;
    longest_ = kept;
    keep(shrinking * kept);
}

void SoundQueue::needed(double seconds)
{
    if (seconds <= longest_)
        return;
    if (std::exchange(longest_, seconds) > 0)
        keep(seconds);
}

void SoundQueue::keep(double seconds) const
{
    writeJsonFile(file_, {{field, seconds}});
}

} // namespace kelo::engine
