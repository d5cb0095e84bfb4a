#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// What the display is asked to do.
class DisplayRequests {
public:
    explicit DisplayRequests(Session &session)
        : session_(session)
    {
    }

    void largeCaptions(const Request &request, const Moment &now);
    void highContrast(const Request &request, const Moment &now);
    void useMicrophone(const Request &request, const Moment &now);
    void whichMicrophone(const Request &request, const Moment &now);
    void fullScreen(const Request &request, const Moment &now);
    void visualiser(const Request &request, const Moment &now);
    void showWindow(const Request &request, const Moment &now);
    void hideWindow(const Request &request, const Moment &now);
    void startAtLogin(const Request &request, const Moment &now);

    static constexpr Handler<DisplayRequests> handlers[] = {
        {Action::LargeCaptions, &DisplayRequests::largeCaptions},
        {Action::HighContrast, &DisplayRequests::highContrast},
        {Action::UseMicrophone, &DisplayRequests::useMicrophone},
        {Action::WhichMicrophone, &DisplayRequests::whichMicrophone},
        {Action::FullScreen, &DisplayRequests::fullScreen},
        {Action::Visualiser, &DisplayRequests::visualiser},
        {Action::ShowWindow, &DisplayRequests::showWindow},
        {Action::HideWindow, &DisplayRequests::hideWindow},
        {Action::StartAtLogin, &DisplayRequests::startAtLogin},
    };

private:
    void ask(std::string_view keyword, std::string_view what, bool flag) const;

    Session &session_;
};

} // namespace kelo::engine
