#include "assistant/display_requests.h"

#include <string>

namespace kelo::engine {

void DisplayRequests::ask(std::string_view keyword, std::string_view what, bool flag) const
{
    session_.wire.send(keyword, std::string(what) + (flag ? " 1" : " 0"));
}

void DisplayRequests::largeCaptions(const Request &request, const Moment &now)
{
    const bool on = request.on.value_or(true);
    ask("access", "large", on);
    session_.say(on ? "Large captions." : "Normal captions.", now);
}

void DisplayRequests::highContrast(const Request &request, const Moment &now)
{
    const bool on = request.on.value_or(true);
    ask("access", "contrast", on);
    session_.say(on ? "High contrast." : "Normal contrast.", now);
}

/// The display knows which there are, and says which it took.
void DisplayRequests::useMicrophone(const Request &request, const Moment &)
{
    session_.wire.send("microphone", request.microphone.value_or("next"));
}

void DisplayRequests::whichMicrophone(const Request &, const Moment &)
{
    session_.wire.send("microphone", "");
}

void DisplayRequests::fullScreen(const Request &request, const Moment &now)
{
    const bool on = request.on.value_or(true);
    ask("window", "full", on);
    session_.say(on ? "Full screen." : "No full screen.", now);
}

void DisplayRequests::visualiser(const Request &request, const Moment &now)
{
    const bool on = request.on.value_or(true);
    ask("window", "visual", on);
    session_.say(on ? "The visualiser." : "The visualiser is closed.", now);
}

void DisplayRequests::showWindow(const Request &, const Moment &now)
{
    ask("window", "show", true);
    session_.say("Here I am.", now);
}

void DisplayRequests::hideWindow(const Request &, const Moment &now)
{
    ask("window", "show", false);
    session_.say("I'm in the background.", now);
}

/// The display's answer is told.
void DisplayRequests::startAtLogin(const Request &request, const Moment &)
{
    ask("window", "login", request.on.value_or(true));
}

} // namespace kelo::engine
