#include "activities/exercise_activity.h"

#include "lessons/exercises.h"
#include "listen/words.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelo::engine {

ExerciseActivity::ExerciseActivity(Session &shared, const Request &wanted)
    : LessonTeaching(shared)
    , lesson_(Piece{}, {}, Hands::Right)
{
    take(wanted);
}

void ExerciseActivity::take(const Request &request)
{
    kind_ = request.action;
    keyGiven_ = keyGiven_ || request.key;
    key_ = request.key.value_or(key_);
    if (request.number)
        pattern_ = std::clamp(*request.number, 1, fingerPatterns) - 1;
    only_ = request.hands;
    hands_ = only_.value_or(Hands::Right);
}

void ExerciseActivity::enter(const Moment &now)
{
    if (!keyGiven_)
        key_ = keyOfDay(std::chrono::floor<std::chrono::days>(now.local));
    show(session_.pianoPresent ? "" : "I don't see a piano yet. ", now);
}

void ExerciseActivity::leave(const Moment &now)
{
    lesson_.stop();
    keep(now);
    if (paused())
        resume(now);
    TeachingActivity::leave(now);
}

bool ExerciseActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<ExerciseActivity> handlers[] = {
        {Action::Scale, &ExerciseActivity::change},
        {Action::Arpeggio, &ExerciseActivity::change},
        {Action::Cadence, &ExerciseActivity::change},
        {Action::FingerPattern, &ExerciseActivity::change},
        {Action::Start, &ExerciseActivity::again},
        {Action::Again, &ExerciseActivity::again},
        {Action::Next, &ExerciseActivity::nextKey},
        {Action::Previous, &ExerciseActivity::previousKey},
        {Action::StartOver, &ExerciseActivity::startOver},
        {Action::NoteNames, &ExerciseActivity::names},
        {Action::SetHands, &ExerciseActivity::setHands},
        {Action::Hands, &ExerciseActivity::nextHands},
        {Action::Stop, &ExerciseActivity::stop},
    };
    return handle(*this, handlers, request, now);
}

Piece ExerciseActivity::piece() const
{
    switch (kind_) {
    case Action::Arpeggio:
        return arpeggioOf(key_, hands_);
    case Action::Cadence:
        return cadenceOf(key_, hands_);
    case Action::FingerPattern:
        return patternOf(key_, hands_, pattern_);
    default:
        return scaleOf(key_, hands_);
    }
}

std::string ExerciseActivity::title() const
{
    const std::string in = " in " + nameOf(key_);
    switch (kind_) {
    case Action::Arpeggio:
        return "The arpeggio of " + nameOf(key_);
    case Action::Cadence:
        return "The cadence" + in;
    case Action::FingerPattern:
        return "Finger exercise " + numberInWords(pattern_ + 1) + in;
    default:
        return "The scale of " + nameOf(key_);
    }
}

/// "The scale of C major. Right hand: one, two, three, ..."
std::string ExerciseActivity::opening() const
{
    const Piece exercise = piece();
    switch (kind_) {
    case Action::Cadence: // whose fingers are those of chords
        return title()
            + (hands_ == Hands::Both         ? ", both hands."
                    : hands_ == Hands::Right ? ", right hand."
                                             : ", left hand.");
    case Action::FingerPattern:
        return title() + ". " + fingersOfBar(exercise);
    default:
        return title() + ". " + fingersInWords(exercise);
    }
}

/// A finger exercise is learnt bar by bar, what is shorter at one go.
Lesson ExerciseActivity::lesson() const
{
    Lesson lesson(piece(), title(), hands_);
    if (kind_ != Action::FingerPattern) {
        lesson.joinAll();
        lesson.show(true);
    }
    lesson.sayAtEnd({});
    lesson.setTalk(session_.talk, session_.attention);
    return lesson;
}

void ExerciseActivity::show(const std::string &before, const Moment &now)
{
    lesson_.stop();
    keep(now);
    lesson_ = lesson();
    teach(lesson_.open(before + opening()), now);
}

void ExerciseActivity::change(const Request &request, const Moment &now)
{
    take(request);
    show({}, now);
}

void ExerciseActivity::again(const Request &, const Moment &now)
{
    teach(lesson_.repeat(), now);
}

void ExerciseActivity::moveBy(int fifths)
{
    key_.tonic = ((key_.tonic + 7 * fifths) % 12 + 12) % 12;
    hands_ = only_.value_or(Hands::Right);
}

void ExerciseActivity::nextKey(const Request &, const Moment &now)
{
    moveBy(1);
    show({}, now);
}

void ExerciseActivity::previousKey(const Request &, const Moment &now)
{
    moveBy(-1);
    show({}, now);
}

void ExerciseActivity::startOver(const Request &, const Moment &now)
{
    moveBy(0);
    show({}, now);
}

void ExerciseActivity::names(const Request &, const Moment &now)
{
    say(opening() + " " + lesson_.notes(), now);
}

void ExerciseActivity::setHands(const Request &request, const Moment &now)
{
    only_ = request.hands;
    hands_ = only_.value_or(Hands::Both);
    show({}, now);
}

void ExerciseActivity::nextHands(const Request &, const Moment &now)
{
    setHands({.action = Action::SetHands, .hands = nextOf(hands_)}, now);
}

void ExerciseActivity::stop(const Request &, const Moment &)
{
    endExample();
    session_.metronome.stop();
}

Reply ExerciseActivity::press(int pitch, const Moment &now)
{
    return goOn(lesson_.press(pitch, now.uptime), now);
}

/// After the last part of one hand the other one follows, then both, then the next key.
Reply ExerciseActivity::goOn(Reply reply, const Moment &now)
{
    keep(now);
    if (!reply.over)
        return reply;
    if (only_ || hands_ == Hands::Both)
        moveBy(1);
    else
        hands_ = hands_ == Hands::Right ? Hands::Left : Hands::Both;
    lesson_ = lesson();
    const std::string praise = reply.words.empty() ? "" : "Good. ";
    const Reply opened = lesson_.open(praise + opening());
    return {reply.good, opened.words, opened.demo};
}

void ExerciseActivity::advance(const Moment &now)
{
    lesson_.setTalk(session_.talk, session_.attention);
    if (!paused())
        teach(goOn(lesson_.advance(now.uptime), now), now);
    TeachingActivity::advance(now);
}

void ExerciseActivity::keep(const Moment &now)
{
    if (const auto part = lesson_.takePlayed())
        session_.practice.add(barsOf(*part, lesson_.title(), now.local));
}

std::string ExerciseActivity::place() const
{
    return "You practise. " + opening();
}

std::string_view ExerciseActivity::help() const
{
    return "I play an exercise and you play it back: each hand, then both, then the next key. "
           "Space plays it again, N says the fingers and notes, right and left change the key. Say "
           "scale, arpeggio, cadence or finger exercise, and a key. Return pauses. Zero goes home.";
}

std::string_view ExerciseActivity::suggestions() const
{
    return "repeat; next; arpeggio of F minor; cadence in G; finger exercise two; left hand; both "
           "hands; slower; or go home";
}

} // namespace kelo::engine
