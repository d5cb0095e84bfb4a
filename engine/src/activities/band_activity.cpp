#include "activities/band_activity.h"

#include "activities/home_activity.h"

namespace kelo::engine {

namespace {

constexpr int bandTempoStep = 5;

} // namespace

void BandActivity::enter(const Moment &now)
{
    if (tempo_)
        session_.band.setTempo(*tempo_);
    session_.band.start();
    say(session_.pianoPresent ? "The band is ready. Hold a chord, and it comes in."
                              : "The band is ready, but I don't see a piano yet.",
        now);
}

void BandActivity::leave(const Moment &now)
{
    if (paused())
        session_.wire.send("paused", "0");
    session_.band.stop();
    Activity::leave(now);
}

bool BandActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<BandActivity> handlers[] = {
        {Action::Band, &BandActivity::set},
        {Action::Start, &BandActivity::start},
        {Action::Slower, &BandActivity::slower},
        {Action::Faster, &BandActivity::faster},
        {Action::Tempo, &BandActivity::tempo},
    };
    return handle(*this, handlers, request, now);
}

void BandActivity::set(const Request &request, const Moment &now)
{
    if (request.number) {
        setTempo(*request.number, now);
    } else if (request.on.value_or(paused())) {
        resume(now);
    } else {
        begin<HomeActivity>(now);
        say("The band is off.", now);
    }
}

void BandActivity::start(const Request &, const Moment &now)
{
    if (paused())
        resume(now);
}

bool BandActivity::pause(const Moment &)
{
    session_.band.stop();
    session_.wire.send("paused", "1");
    return true;
}

void BandActivity::resume(const Moment &)
{
    if (!paused())
        return;
    session_.wire.send("paused", "0");
    session_.band.start();
}

void BandActivity::note(int pitch, int velocity, const Moment &now)
{
    session_.band.key(pitch, velocity, now.uptime);
}

void BandActivity::slower(const Request &, const Moment &now)
{
    setTempo(session_.band.tempo() - bandTempoStep, now);
}

void BandActivity::faster(const Request &, const Moment &now)
{
    setTempo(session_.band.tempo() + bandTempoStep, now);
}

void BandActivity::tempo(const Request &request, const Moment &now)
{
    setTempo(request.number.value_or(100), now);
}

void BandActivity::setTempo(int tempo, const Moment &now)
{
    session_.band.setTempo(tempo);
    say("The band at " + std::to_string(session_.band.tempo()) + ".", now);
}

std::string_view BandActivity::help() const
{
    return "Hold a chord, and bass and drums come in; they follow your chords. Left and right "
           "bracket make them quieter and louder, minus and equals slower and faster. Return "
           "pauses them. Zero goes home.";
}

std::string_view BandActivity::suggestions() const
{
    return "simple band; full band; band louder; slower; or band off";
}

} // namespace kelo::engine
