#include "assistant/mode_display.h"

#include "listen/understanding.h"

#include <array>
#include <cstdio>
#include <utility>

namespace kelo::engine {

void ModeDisplay::show(const Activity &activity, bool talking)
{
    const std::string_view mode = talking && activity.mode() == "idle" ? "talk" : activity.mode();
    std::string phrases;
    for (const std::string &phrase :
        vocabulary(activity.where() | (talking ? InTalk : 0U), session_.library.names()))
        phrases += (phrases.empty() ? "" : "|") + phrase;
    const bool another = mode_ != mode;
    if (another) {
        mode_ = mode;
        session_.wire.send("mode", mode);
    }
    if (another || phrases_ != phrases) {
        phrases_ = std::move(phrases);
        session_.wire.send("vocab", phrases_);
    }
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
