#pragma once

#include "setup/profile.h"

#include <string>

namespace kelo::engine {

/// "Good evening, Ann."; on the first start of a birthday it says so.
[[nodiscard]] std::string greetingFor(const Profile &profile, const Day &today, int hour);

} // namespace kelo::engine
