#include "assistant/mode_display.h"

#include "listen/understanding.h"

#include <array>
#include <cstdio>

namespace kelo::engine {

void ModeDisplay::show(const Activity &activity, bool talking)
{
    const std::string_view mode = talking && activity.mode() == "idle" ? "talk" : activity.mode();
    if (mode_ == mode)
        return;
    mode_ = mode;
    session_.wire.send("mode", mode);
    std::string phrases;
    for (const std::string &phrase :
        vocabulary(activity.where() | (talking ? InTalk : 0U), session_.library.names()))
        phrases += (phrases.empty() ? "" : "|") + phrase;
    session_.wire.send("vocab", phrases);
}

void ModeDisplay::showTime(const Moment &now)
{
    if (now.minuteOfDay() == minute_)
        return;
    minute_ = now.minuteOfDay();
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d", now.hour(), now.minute());
    session_.wire.send("now", text.data());
}

} // namespace kelo::engine
