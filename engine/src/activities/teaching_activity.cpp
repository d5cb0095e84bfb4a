#include "activities/teaching_activity.h"

namespace kelo::engine {

namespace {

constexpr double breath = 0.8; ///< seconds between what was played and the next example

} // namespace

bool TeachingActivity::pause(const Moment &now)
{
    if (!Activity::pause(now))
        session_.wire.send("paused", "1");
    paused_ = true;
    return true;
}

void TeachingActivity::resume(const Moment &now)
{
    paused_ = false;
    if (session_.player.paused())
        session_.player.carryOn(now.uptime);
    else
        session_.wire.send("paused", "0");
    if (listening())
        listen(now);
}

void TeachingActivity::note(int pitch, int velocity, const Moment &now)
{
    if (paused_)
        return;
    if (velocity <= 0) {
        touch(pitch, 0, now);
        return;
    }
    if (!listening() && entersWith(pitch)) {
        session_.host.hush();
        endExample();
        listen(now);
    }
    touch(pitch, velocity, now);
    teach(press(pitch, now), now);
}

/// What was played before it has to be played again, but nothing was wrong.
void TeachingActivity::takeBack(int, const Moment &now)
{
    if (listening() && !paused_ && !session_.player.playing())
        listen(now);
}

void TeachingActivity::teach(const Reply &reply, const Moment &now)
{
    if (reply.good)
        session_.wire.send("flash", *reply.good ? "good" : "wrong");
    if (reply.good.value_or(false) && givesCues())
        session_.metronome.give(Metronome::Cue::Right, now.uptime);
    if (!reply.words.empty())
        say(reply.words, now);
    if (reply.demo) {
        if (paused())
            resume(now);
        exampleWaits_ = true;
        exampleAt_ = reply.good ? now.uptime + breath : now.uptime;
        session_.player.stop();
    }
    if (reply.over)
        over(now);
}

void TeachingActivity::endExample()
{
    exampleWaits_ = false;
    session_.player.stop();
}

void TeachingActivity::demonstrate(const Moment &now)
{
    exampleWaits_ = false;
    session_.player.demonstrate(example(), now.uptime);
    if (const auto ticks = beat(now); ticks && session_.metronome.ticking())
        session_.metronome.start(ticks->tempo, ticks->beats, now.uptime, session_.player.timeOf(0));
}

void TeachingActivity::advance(const Moment &now)
{
    if (session_.host.speaking() || paused_)
        return;
    if (exampleWaits_) {
        if (now.uptime >= exampleAt_)
            demonstrate(now);
    } else if (!session_.player.playing() && !listening()) {
        listen(now);
        if (givesCues())
            session_.metronome.give(Metronome::Cue::YourTurn, now.uptime);
    }
}

} // namespace kelo::engine
