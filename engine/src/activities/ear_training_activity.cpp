#include "activities/ear_training_activity.h"

#include "activities/home_activity.h"

namespace kelo::engine {

void EarTrainingActivity::enter(const Moment &now)
{
    Reply reply = game_->begin();
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
    teach(game_->repeat(), now);
}

void EarTrainingActivity::next(const Request &, const Moment &now)
{
    teach(game_->skip(), now);
}

void EarTrainingActivity::answer(const Request &, const Moment &now)
{
    game_->tell();
    say("It is " + game_->answer() + ".", now);
}

void EarTrainingActivity::stop(const Request &, const Moment &)
{
    endExample();
}

void EarTrainingActivity::home(const Request &, const Moment &now)
{
    begin<HomeActivity>(now);
    say("Home. " + game_->tally(), now);
}

std::string_view EarTrainingActivity::suggestions() const
{
    return "repeat; next; what notes; or go home";
}

} // namespace kelo::engine
