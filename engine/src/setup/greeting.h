#pragma once

#include "setup/profile.h"

#include <string>

namespace kelo::engine {

/// "Good evening, Ann."; on the first start of a birthday it says so.
[[nodiscard]] std::string greetingFor(
    const Profile &profile, std::chrono::year_month_day today, int hour);

} // namespace kelo::engine
