#include "setup/settings.h"

#include <utility>

namespace kelo::engine {

Settings::Settings(std::filesystem::path file)
    : file_(std::move(file))
{
    if (const auto kept = loadProfile(file_)) {
        profile_ = *kept;
        known_ = true;
    }
}

void Settings::answer(std::string_view fields)
{
    profile_ = profileFromSetup(fields, profile_);
    known_ = true;
    save();
}

void Settings::save() const
{
    if (known_)
        static_cast<void>(saveProfile(profile_, file_));
}

} // namespace kelo::engine
