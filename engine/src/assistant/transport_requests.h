#pragma once

#include "activities/activity.h"

#include <memory>

namespace kelo::engine {

/// Pausing, carrying on and stopping what goes on, and the choices of home from anywhere.
class TransportRequests {
public:
    /// `current` is the activity that the user is in, never empty.
    TransportRequests(Session &session, const std::unique_ptr<Activity> &current)
        : session_(session)
        , current_(current)
    {
    }

    void pauseOrCarryOn(const Request &request, const Moment &now);
    void pause(const Request &request, const Moment &now);
    void carryOn(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void toChoices(const Request &request, const Moment &now);

    static constexpr Handler<TransportRequests> handlers[] = {
        {Action::PauseOrCarryOn, &TransportRequests::pauseOrCarryOn},
        {Action::Pause, &TransportRequests::pause},
        {Action::CarryOn, &TransportRequests::carryOn},
        {Action::Stop, &TransportRequests::stop},
        {Action::Start, &TransportRequests::toChoices},
        {Action::OpenChoice, &TransportRequests::toChoices},
        {Action::Next, &TransportRequests::toChoices},
        {Action::Previous, &TransportRequests::toChoices},
        {Action::NextChoice, &TransportRequests::toChoices},
        {Action::PreviousChoice, &TransportRequests::toChoices},
        {Action::ListChoices, &TransportRequests::toChoices},
    };

private:
    Session &session_;
    const std::unique_ptr<Activity> &current_;
};

} // namespace kelo::engine
