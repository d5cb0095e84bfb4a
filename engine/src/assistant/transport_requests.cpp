#include "assistant/transport_requests.h"

#include "activities/home_activity.h"

namespace kelo::engine {

void TransportRequests::pauseOrCarryOn(const Request &, const Moment &now)
{
    current_->pauseOrCarryOn(now);
}

void TransportRequests::pause(const Request &, const Moment &now)
{
    if (current_->paused() || !current_->pause(now))
        session_.say("Nothing plays.", now);
}

void TransportRequests::carryOn(const Request &, const Moment &now)
{
    if (current_->paused())
        current_->resume(now);
    else
        session_.say("Nothing is paused.", now);
}

void TransportRequests::stop(const Request &, const Moment &now)
{
    if (current_->busy())
        session_.host.begin(std::make_unique<HomeActivity>(session_), now);
}

void TransportRequests::toChoices(const Request &request, const Moment &now)
{
    session_.host.begin(std::make_unique<HomeActivity>(session_), now);
    static_cast<void>(current_->request(request, now));
}

} // namespace kelo::engine
