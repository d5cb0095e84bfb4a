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

bool Settings::keep()
{
    if (!kept_)
        save();
    return kept_;
}

void Settings::save()
{
    if (known_ && !file_.empty())
        kept_ = saveProfile(profile_, file_);
}

} // namespace kelo::engine
