#include "activities/ear_training_activity.h"

#include "activities/home_activity.h"

namespace kelo::engine {

void EarTrainingActivity::enter(const Moment &now)
{
    Reply reply = trainer_.begin();
    if (!session_.pianoPresent)
        reply.words.insert(0, "I don't see a piano yet. ");
    teach(reply, now);
}

void EarTrainingActivity::leave(const Moment &now)
{
    if (paused())
        resume(now);
    TeachingActivity::leave(now);
}

bool EarTrainingActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<EarTrainingActivity> handlers[] = {
        {Action::Start, &EarTrainingActivity::repeat},
        {Action::Again, &EarTrainingActivity::repeat},
        {Action::Previous, &EarTrainingActivity::repeat},
        {Action::Next, &EarTrainingActivity::next},
        {Action::NoteNames, &EarTrainingActivity::answer},
        {Action::Stop, &EarTrainingActivity::stop},
        {Action::Home, &EarTrainingActivity::home},
    };
    return handle(*this, handlers, request, now);
}

void EarTrainingActivity::repeat(const Request &, const Moment &now)
{
    teach(trainer_.repeat(), now);
}

void EarTrainingActivity::next(const Request &, const Moment &now)
{
    teach(trainer_.skip(), now);
}

void EarTrainingActivity::answer(const Request &, const Moment &now)
{
    trainer_.tell();
    say("It is " + trainer_.answer() + ".", now);
}

void EarTrainingActivity::stop(const Request &, const Moment &)
{
    endExample();
}

void EarTrainingActivity::home(const Request &, const Moment &now)
{
    begin<HomeActivity>(now);
    say("Home. " + trainer_.tally(), now);
}

std::string_view EarTrainingActivity::help() const
{
    return "I play a note, you find it on your piano. Space plays it again, N tells you what it "
           "was, right goes on to another. Zero goes home.";
}

std::string_view EarTrainingActivity::suggestions() const
{
    return "repeat; next; what notes; or go home";
}

} // namespace kelo::engine
