#include "activities/duet_activity.h"

#include "theory/pulse.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double breath = 1.5; ///< seconds between two times
constexpr int slowest = 20; ///< percent
constexpr int fastest = 200;

} // namespace

DuetActivity::DuetActivity(Session &shared, Piece take, int percent)
    : Activity(shared)
    , take_(std::move(take))
    , percent_(std::clamp(percent, slowest, fastest))
{
}

void DuetActivity::enter(const Moment &now)
{
    session_.heard = {"What you played", take_};
    tempoBefore_ = session_.player.tempo();
    session_.player.stop();
    session_.player.setTempo(percent_ / 100.0, now.uptime);
    next_ = now.uptime;
    say("I play what you played, again and again. Play with me after the ticks.", now);
}

void DuetActivity::leave(const Moment &now)
{
    Activity::leave(now);
    session_.player.setTempo(tempoBefore_, now.uptime);
}

bool DuetActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<DuetActivity> handlers[] = {
        {Action::Start, &DuetActivity::again},
        {Action::Again, &DuetActivity::again},
        {Action::StartOver, &DuetActivity::again},
        {Action::Previous, &DuetActivity::again},
        {Action::PlayWithMe, &DuetActivity::again},
        {Action::Stop, &DuetActivity::stop},
    };
    return handle(*this, handlers, request, now);
}

void DuetActivity::again(const Request &request, const Moment &now)
{
    session_.player.stop();
    session_.metronome.stop();
    if (request.number)
        session_.player.setTempo(std::clamp(*request.number, slowest, fastest) / 100.0, now.uptime);
    state_ = State::Waiting;
    next_ = now.uptime;
}

void DuetActivity::stop(const Request &, const Moment &)
{
    session_.player.stop();
    session_.metronome.stop();
    state_ = State::Stopped;
}

/// One bar in the pulse of what was played; its own first bar follows the last tick.
void DuetActivity::countIn(const Moment &now)
{
    const Pulse pulse = pulseOf(take_->notes);
    const double period = pulse.period / session_.player.tempo();
    const auto tempo = static_cast<int>(std::lround(60 / period));
    session_.metronome.countIn(tempo, pulse.beats, now.uptime);
    const double firstBar = now.uptime + Metronome::soon + pulse.beats * 60.0 / tempo;
    next_ = std::max(
        now.uptime, firstBar - pulse.start / session_.player.tempo() - Player::demonstrationDelay);
    state_ = State::CountingIn;
}

void DuetActivity::advance(const Moment &now)
{
    if (state_ == State::Playing) {
        if (session_.player.playing() || session_.player.paused())
            return;
        state_ = State::Waiting;
        next_ = now.uptime + breath;
    }
    if (now.uptime < next_ || session_.host.speaking())
        return;
    if (state_ == State::Waiting) {
        countIn(now);
    } else if (state_ == State::CountingIn) {
        session_.player.demonstrate(take_, now.uptime);
        state_ = State::Playing;
    }
}

std::optional<double> DuetActivity::deadline() const
{
    const bool waits = state_ == State::Waiting || state_ == State::CountingIn;
    return waits && !session_.host.speaking() ? std::optional(next_) : std::nullopt;
}

std::optional<Beat> DuetActivity::beat(const Moment &now) const
{
    const Pulse pulse = pulseOf(take_->notes);
    const double tempo = 60 / pulse.period * session_.player.tempo();
    return Beat{static_cast<int>(std::lround(tempo)), pulse.beats, now.uptime};
}

std::string_view DuetActivity::help() const
{
    return "I count in and play what you played last; play along. At its end it begins anew. Space "
           "begins at once, minus and equals change the tempo, Return pauses. Zero goes home.";
}

std::string_view DuetActivity::suggestions() const
{
    return "again; slower; faster; stop; play it back; or go home";
}

} // namespace kelo::engine
