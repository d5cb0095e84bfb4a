#include "activities/metronome_activity.h"

#include "activities/home_activity.h"

namespace kelo::engine {

namespace {

constexpr int metronomeStep = 4;

} // namespace

void MetronomeActivity::enter(const Moment &now)
{
    set(wanted_, now);
}

bool MetronomeActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<MetronomeActivity> handlers[] = {
        {Action::Metronome, &MetronomeActivity::set},
        {Action::Tempo, &MetronomeActivity::set},
        {Action::Slower, &MetronomeActivity::slower},
        {Action::Faster, &MetronomeActivity::faster},
        {Action::Start, &MetronomeActivity::again},
    };
    return handle(*this, handlers, request, now);
}

void MetronomeActivity::set(const Request &request, const Moment &now)
{
    const Metronome &metronome = session_.metronome;
    const bool changes = request.number || request.metre;
    if (!request.on.value_or(changes || !metronome.ticking())) {
        begin<HomeActivity>(now);
        say("Metronome off.", now);
        return;
    }
    start(request.number.value_or(metronome.tempo()),
        request.metre ? request.metre->beats : metronome.beats(), now);
    const int beats = metronome.beats();
    say("Metronome at " + std::to_string(metronome.tempo())
            + (request.metre ? ", " + std::to_string(beats) + " beats." : "."),
        now);
}

void MetronomeActivity::start(int tempo, int beats, const Moment &now)
{
    if (paused())
        session_.wire.send("paused", "0");
    session_.metronome.start(tempo, beats, now.uptime);
}

void MetronomeActivity::slower(const Request &, const Moment &now)
{
    start(session_.metronome.tempo() - metronomeStep, session_.metronome.beats(), now);
    say(std::to_string(session_.metronome.tempo()) + ".", now);
}

void MetronomeActivity::faster(const Request &, const Moment &now)
{
    start(session_.metronome.tempo() + metronomeStep, session_.metronome.beats(), now);
    say(std::to_string(session_.metronome.tempo()) + ".", now);
}

void MetronomeActivity::again(const Request &, const Moment &now)
{
    if (paused())
        resume(now);
    else
        pause(now);
}

bool MetronomeActivity::pause(const Moment &)
{
    session_.metronome.stop();
    session_.wire.send("paused", "1");
    return true;
}

void MetronomeActivity::resume(const Moment &now)
{
    start(session_.metronome.tempo(), session_.metronome.beats(), now);
}

std::string MetronomeActivity::place() const
{
    return "This is the metronome, at " + std::to_string(session_.metronome.tempo()) + ".";
}

std::string_view MetronomeActivity::help() const
{
    return "Minus and equals change the metronome's tempo, Return pauses it. Zero goes home.";
}

std::string_view MetronomeActivity::suggestions() const
{
    return "metronome at ninety; metronome in three four; faster; or metronome off";
}

} // namespace kelo::engine
