#include "activities/lesson_activity.h"

#include "activities/menu_activity.h"

#include <utility>

namespace kelo::engine {

LessonActivity::LessonActivity(Session &shared, Lesson lesson, std::optional<BarRange> bars)
    : LessonTeaching(shared)
    , lesson_(std::move(lesson))
    , bars_(bars)
{
}

void LessonActivity::enter(const Moment &now)
{
    session_.heard = {lesson_.title(), lesson_.wholePiece()};
    lesson_.setTalk(session_.talk, session_.attention);
    Reply reply = lesson_.begin(bars_ ? bars_->first : session_.progress.barOf(lesson_.title()));
    if (!session_.pianoPresent)
        reply.words.insert(0, "I don't see a piano yet. ");
    teach(reply, now);
}

void LessonActivity::leave(const Moment &now)
{
    session_.heard = {lesson_.title(), lesson_.wholePiece()};
    if (dropped_)
        session_.progress.forget(lesson_.title());
    lesson_.stop();
    keepPlayed(now);
    if (paused())
        resume(now);
    TeachingActivity::leave(now);
}

bool LessonActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<LessonActivity> handlers[] = {
        {Action::Start, &LessonActivity::repeat},
        {Action::Again, &LessonActivity::repeat},
        {Action::Next, &LessonActivity::next},
        {Action::Previous, &LessonActivity::previous},
        {Action::StartOver, &LessonActivity::startOver},
        {Action::PlayBars, &LessonActivity::toBars},
        {Action::CarryOn, &LessonActivity::carryOn},
        {Action::Stop, &LessonActivity::stop},
        {Action::NoteNames, &LessonActivity::names},
        {Action::SetHands, &LessonActivity::hands},
        {Action::Hands, &LessonActivity::nextHands},
        {Action::Drop, &LessonActivity::drop},
    };
    return handle(*this, handlers, request, now);
}

void LessonActivity::advance(const Moment &now)
{
    lesson_.setTalk(session_.talk, session_.attention);
    if (!paused())
        teach(lesson_.advance(now.uptime), now);
    TeachingActivity::advance(now);
    keepPlayed(now);
    if (!dropped_)
        session_.progress.reach(lesson_.title(), lesson_.bar());
}

/// What was played stays known.
void LessonActivity::keepPlayed(const Moment &now)
{
    if (const auto part = lesson_.takePlayed())
        session_.practice.add(barsOf(*part, lesson_.title(), now.local));
}

void LessonActivity::repeat(const Request &, const Moment &now)
{
    teach(lesson_.repeat(), now);
}

void LessonActivity::next(const Request &, const Moment &now)
{
    teach(lesson_.skip(), now);
}

void LessonActivity::previous(const Request &, const Moment &now)
{
    teach(lesson_.back(), now);
}

void LessonActivity::startOver(const Request &, const Moment &now)
{
    teach(lesson_.begin(), now);
}

void LessonActivity::toBars(const Request &request, const Moment &now)
{
    if (request.hands)
        session_.host.perform({.action = Action::SetHands, .hands = request.hands}, now);
    teach(lesson_.toBar(request.bars->first), now);
}

void LessonActivity::carryOn(const Request &, const Moment &now)
{
    if (paused())
        resume(now);
    else
        demonstrate(now);
}

void LessonActivity::stop(const Request &, const Moment &)
{
    endExample();
    session_.metronome.stop();
}

void LessonActivity::names(const Request &, const Moment &now)
{
    say(lesson_.notes(), now);
}

void LessonActivity::hands(const Request &request, const Moment &now)
{
    const Reply reply = lesson_.setHands(*request.hands);
    session_.hands = lesson_.hands();
    session_.wire.send("hands", nameOf(session_.hands));
    teach(reply, now);
}

void LessonActivity::nextHands(const Request &, const Moment &now)
{
    hands({.action = Action::SetHands, .hands = nextOf(session_.hands)}, now);
}

void LessonActivity::drop(const Request &, const Moment &now)
{
    say("All right. We leave " + lesson_.title() + ".", now);
    dropped_ = true;
    begin<MenuActivity>(now, MenuActivity::Entry::Quiet);
}

void LessonActivity::over(const Moment &now)
{
    dropped_ = true;
    begin<MenuActivity>(now, MenuActivity::Entry::Quiet);
}

std::string LessonActivity::place() const
{
    return "You are in a lesson on " + lesson_.title() + ". " + lesson_.whereWeAre() + " "
        + lesson_.partOfAll();
}

std::string_view LessonActivity::help() const
{
    return "I play a part and you play it back. Space plays it again, N says its notes. "
           "Right skips ahead, left goes back, Return pauses. Minus and equals change the tempo. "
           "Say right hand, left hand or both hands to choose, or play bar five. Zero goes home.";
}

std::string_view LessonActivity::suggestions() const
{
    return "repeat; next; go back; play bar five; note names; right hand; both hands; slower; or "
           "drop this song";
}

} // namespace kelo::engine
