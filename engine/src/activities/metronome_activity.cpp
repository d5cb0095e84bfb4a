#include "activities/metronome_activity.h"

#include "activities/home_activity.h"

namespace kelo::engine {

namespace {

constexpr int metronomeStep = 4;
constexpr int mostBeats = 7; ///< that a key chooses

std::string dividedInto(int parts)
{
    switch (parts) {
    case 2:
        return "in eighths";
    case 3:
        return "in triplets";
    case 4:
        return "in sixteenths";
    default:
        return "beats alone";
    }
}

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
        {Action::Next, &MetronomeActivity::moreParts},
        {Action::Previous, &MetronomeActivity::nextMetre},
    };
    return handle(*this, handlers, request, now);
}

void MetronomeActivity::set(const Request &request, const Moment &now)
{
    const Metronome &metronome = session_.metronome;
    const bool changes = request.number || request.metre || request.parts;
    if (!request.on.value_or(changes || !metronome.ticking())) {
        begin<HomeActivity>(now);
        say("Metronome off.", now);
        return;
    }
    if (request.parts)
        session_.metronome.divide(*request.parts, now.uptime);
    start(request.number.value_or(metronome.tempo()),
        request.metre ? request.metre->beats : metronome.beats(), now);
    const int beats = metronome.beats();
    say("Metronome at " + std::to_string(metronome.tempo())
            + (request.metre ? ", " + std::to_string(beats) + " beats" : "")
            + (request.parts ? ", " + dividedInto(metronome.parts()) : "") + ".",
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

void MetronomeActivity::moreParts(const Request &, const Moment &now)
{
    Metronome &metronome = session_.metronome;
    metronome.divide(metronome.parts() % Metronome::mostParts + 1, now.uptime);
    say("Now " + dividedInto(metronome.parts()) + ".", now);
}

void MetronomeActivity::nextMetre(const Request &, const Moment &now)
{
    const int beats = session_.metronome.beats() % mostBeats + 1;
    start(session_.metronome.tempo(), beats, now);
    say(std::to_string(beats) + (beats == 1 ? " beat." : " beats."), now);
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
    return "Minus and equals change the metronome's tempo, left the beats of a bar, right the "
           "parts of a beat. Return pauses it. Zero goes home.";
}

std::string_view MetronomeActivity::suggestions() const
{
    return "metronome at ninety; metronome in three four; in triplets; without accent; faster; or "
           "metronome off";
}

} // namespace kelo::engine
