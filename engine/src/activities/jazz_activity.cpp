#include "activities/jazz_activity.h"

#include "composing/backing_band.h"
#include "lessons/jazz_course.h"
#include "theory/pitch_names.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr int bandTempo = 112;
constexpr int choruses = 4;
constexpr double quietBeforeWords = 0.8;

std::vector<Step> stepsOf(const Piece &piece)
{
    std::vector<Step> steps;
    for (const Note &note : piece.notes) {
        if (steps.empty() || note.at > steps.back().at + 0.01)
            steps.push_back({note.at, {}});
        steps.back().pitches.push_back(note.pitch);
    }
    return steps;
}

std::string keyName(std::size_t key)
{
    return "in " + pitchName(60 + jazzKeys[key], Spelling::Flats);
}

} // namespace

JazzActivity::JazzActivity(Session &shared, std::optional<std::size_t> number)
    : TeachingActivity(shared)
{
    if (number)
        number_ = *number;
    else
        goOn();
}

void JazzActivity::tellLessons(const Session &session)
{
    std::string names;
    for (std::size_t i = 0; i < jazzLessonCount; ++i)
        names += (i == 0 ? "" : "|") + std::string(jazzLesson(i).title);
    session.wire.send("jazz", names);
}

void JazzActivity::enter(const Moment &now)
{
    tellLessons(session_);
    idea({}, now);
}

/// Where the course was left; after a lesson's last key with the next lesson.
void JazzActivity::goOn()
{
    const JazzPlace left = session_.progress.jazz();
    const bool done = left.key >= jazzKeys.size();
    number_ = (left.lesson + (done ? 1 : 0)) % jazzLessonCount;
    key_ = done ? 0 : left.key;
}

/// While the band plays it is the last one.
std::size_t JazzActivity::heardKey() const
{
    return std::min(key_, jazzKeys.size() - 1);
}

void JazzActivity::leave(const Moment &now)
{
    if (paused())
        resume(now);
    TeachingActivity::leave(now);
}

bool JazzActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<JazzActivity> handlers[] = {
        {Action::Jazz, &JazzActivity::open},
        {Action::JamAgain, &JazzActivity::jam},
        {Action::JazzIdea, &JazzActivity::idea},
        {Action::ComposingIdea, &JazzActivity::idea},
        {Action::StartOver, &JazzActivity::startOver},
        {Action::Start, &JazzActivity::again},
        {Action::Again, &JazzActivity::again},
        {Action::Next, &JazzActivity::next},
        {Action::Previous, &JazzActivity::previous},
        {Action::Stop, &JazzActivity::stopBand},
        {Action::NoteNames, &JazzActivity::names},
    };
    return handle(*this, handlers, request, now);
}

void JazzActivity::begin(std::size_t number, const Moment &now)
{
    number_ = number % jazzLessonCount;
    key_ = 0;
    idea({}, now);
}

void JazzActivity::open(const Request &request, const Moment &now)
{
    const int last = static_cast<int>(jazzLessonCount);
    if (request.number && (*request.number < 1 || *request.number > last)) {
        say("There are " + std::to_string(last) + " lessons.", now);
        return;
    }
    begin(request.number ? static_cast<std::size_t>(*request.number) - 1 : number_, now);
}

void JazzActivity::idea(const Request &, const Moment &now)
{
    const JazzLesson &lesson = jazzLesson(number_);
    attempt_.reset();
    band_ = false;
    teach(
        {{},
            "Lesson " + std::to_string(number_ + 1) + ": " + std::string(lesson.title) + ". "
                + std::string(lesson.idea) + " Listen, " + keyName(heardKey()) + ", then play it.",
            true},
        now);
}

void JazzActivity::again(const Request &request, const Moment &now)
{
    if (band_) {
        jam(request, now);
        return;
    }
    attempt_.reset();
    teach({{}, {}, true}, now);
}

void JazzActivity::jam(const Request &, const Moment &now)
{
    attempt_.reset();
    band_ = true;
    teach({{}, "The band plays. Try it.", true}, now);
}

void JazzActivity::stopBand(const Request &, const Moment &)
{
    band_ = false;
    endExample();
}

void JazzActivity::next(const Request &, const Moment &now)
{
    begin(number_ + 1, now);
}

void JazzActivity::previous(const Request &, const Moment &now)
{
    begin(number_ + jazzLessonCount - 1, now);
}

void JazzActivity::startOver(const Request &, const Moment &now)
{
    begin(number_, now);
}

void JazzActivity::names(const Request &, const Moment &now)
{
    std::string text;
    for (const Step &step : stepsOf(jazzExample(jazzLesson(number_), jazzKeys[heardKey()])))
        text += (text.empty() ? "" : ", ") + pitchNames(step.pitches, Spelling::Flats)
            + (step.pitches.size() > 1 ? " together" : "");
    say(text + ".", now);
}

Piece JazzActivity::example() const
{
    const JazzLesson &lesson = jazzLesson(number_);
    if (band_)
        return pieceOf(jazzBand(lesson.chords, bandTempo, choruses));
    return jazzExample(lesson, jazzKeys[heardKey()]);
}

void JazzActivity::listen(const Moment &)
{
    if (band_)
        return; // over the band everything is right
    attempt_.emplace(
        stepsOf(jazzExample(jazzLesson(number_), jazzKeys[heardKey()])), Spelling::Flats);
}

bool JazzActivity::listening() const
{
    return band_ || attempt_.has_value();
}

Reply JazzActivity::press(int pitch, const Moment &now)
{
    if (!attempt_ || session_.player.playing())
        return {};
    missedAt_ = now.uptime;
    const bool going = attempt_->state() == Attempt::State::Going;
    const Attempt::State state = attempt_->press(pitch, now.uptime);
    return going ? judged(state) : Reply{};
}

Reply JazzActivity::judged(Attempt::State state)
{
    if (state == Attempt::State::Missed)
        return {false, {}, false, false};
    if (state == Attempt::State::Going)
        return {};
    attempt_.reset();
    if (++key_ < jazzKeys.size())
        return {true, "Good. Now " + keyName(key_) + ".", true};
    band_ = true;
    return {true, "Good. Now try it over the band.", true};
}

std::optional<double> JazzActivity::deadline() const
{
    if (!attempt_ || paused())
        return {};
    if (attempt_->state() == Attempt::State::Missed)
        return missedAt_ + quietBeforeWords;
    return attempt_->deadline();
}

void JazzActivity::advance(const Moment &now)
{
    if (const auto due = deadline(); due && now.uptime >= *due) {
        if (attempt_->state() == Attempt::State::Missed) {
            const std::string fault = attempt_->fault();
            attempt_.reset();
            listen(now);
            say(fault + " Try again.", now);
        } else if (attempt_->expire(now.uptime) == Attempt::State::Missed) {
            missedAt_ = now.uptime;
            teach({false, {}}, now);
        }
    }
    TeachingActivity::advance(now);
    session_.progress.reach({number_, key_});
}

std::string JazzActivity::place() const
{
    return "This is the jazz course. Lesson " + std::to_string(number_ + 1) + ": "
        + std::string(jazzLesson(number_).title) + ".";
}

std::string_view JazzActivity::help() const
{
    return "I say an idea and play it, you play it in three keys, then over a band. Space plays it "
           "again, N says its notes, right goes to the next lesson, left to the one before. Return "
           "pauses. Zero goes home.";
}

std::string_view JazzActivity::suggestions() const
{
    return "repeat; what notes; the idea of the lesson; jam again; next lesson; or jazz lesson "
           "three";
}

} // namespace kelo::engine
