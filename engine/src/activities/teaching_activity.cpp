#include "activities/teaching_activity.h"

namespace kelo::engine {

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
    if (velocity <= 0 || paused_)
        return;
    if (!listening() && entersWith(pitch)) {
        session_.host.hush();
        endExample();
        listen(now);
    }
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
    if (!reply.words.empty())
        say(reply.words, now);
    if (reply.demo) {
        if (paused())
            resume(now);
        exampleWaits_ = true;
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
    if (exampleWaits_)
        demonstrate(now);
    else if (!session_.player.playing() && !listening())
        listen(now);
}

} // namespace kelo::engine
