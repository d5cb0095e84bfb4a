#include "setup/greeting.h"

namespace kelo::engine {

std::string greetingFor(const Profile &profile, std::chrono::year_month_day today, int hour)
{
    const std::string name = profile.user.empty() ? "" : ", " + profile.user;
    if (isBirthday(profile, today) && profile.wishedIn != static_cast<int>(today.year()))
        return "Happy birthday" + name + "!";
    const std::string time = hour < 5 ? "Good night"
        : hour < 12                   ? "Good morning"
        : hour < 18                   ? "Good afternoon"
                                      : "Good evening";
    return time + name + ".";
}

} // namespace kelo::engine
