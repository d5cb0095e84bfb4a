#include "activities/home_activity.h"

#include <array>

namespace kelo::engine {

namespace {

struct Choice {
    std::string_view name;
    Action action;
};

constexpr std::array<Choice, 19> choices{{
    {"Song menu", Action::OpenMenu},
    {"Play me something", Action::MakeUp},
    {"Compose", Action::Compose},
    {"Jam", Action::Jam},
    {"Live band", Action::Band},
    {"Jazz course", Action::Jazz},
    {"Read a score", Action::ReadScore},
    {"Scales", Action::Scale},
    {"Finger exercises", Action::FingerPattern},
    {"Ear training", Action::EarTraining},
    {"Echo game", Action::EchoGame},
    {"Chords by ear", Action::ChordTraining},
    {"Drone", Action::Drone},
    {"Metronome", Action::Metronome},
    {"My album", Action::Album},
    {"Logic control", Action::LogicControl},
    {"REAPER control", Action::ReaperControl},
    {"Talk mode", Action::TalkMode},
    {"Help", Action::Help},
}};

} // namespace

bool HomeActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<HomeActivity> handlers[] = {
        {Action::Start, &HomeActivity::start},
        {Action::Agree, &HomeActivity::agree},
        {Action::OpenChoice, &HomeActivity::open},
        {Action::Next, &HomeActivity::next},
        {Action::NextChoice, &HomeActivity::next},
        {Action::Previous, &HomeActivity::previous},
        {Action::PreviousChoice, &HomeActivity::previous},
        {Action::ListChoices, &HomeActivity::list},
    };
    return handle(*this, handlers, request, now);
}

/// Opens what was named, or begins a lesson on what was heard or chosen last.
void HomeActivity::start(const Request &request, const Moment &now)
{
    if (named_)
        open(request, now);
    else
        session_.host.perform({Action::Learn}, now);
}

/// Nobody asked where nothing was named.
void HomeActivity::agree(const Request &request, const Moment &now)
{
    if (named_)
        open(request, now);
    else
        say("Yes to what? Say what you would like, or press H for help.", now);
}

void HomeActivity::open(const Request &, const Moment &now)
{
    session_.host.perform({choices[choice_].action}, now);
}

void HomeActivity::next(const Request &, const Moment &now)
{
    step(1, now);
}

void HomeActivity::previous(const Request &, const Moment &now)
{
    step(choices.size() - 1, now);
}

void HomeActivity::step(std::size_t by, const Moment &now)
{
    named_ = true;
    choice_ = (choice_ + by) % choices.size();
    say(std::string(choices[choice_].name) + ".", now);
}

void HomeActivity::list(const Request &, const Moment &now)
{
    std::string text = "You can open:";
    for (const Choice &choice : choices)
        text.append(" ").append(choice.name).append(".");
    say(text, now);
}

std::string_view HomeActivity::help() const
{
    return "Left and right go through the choices, Space opens one. M is the song menu, C "
           "composes, J is the jazz course. O plays a MIDI file of yours, Return pauses it. "
           "A lets you type a command, Slash opens a page with all of them. Zero leaves "
           "any mode.";
}

std::string_view HomeActivity::suggestions() const
{
    return "song menu; teach me song two; play the minuet in G; play me something calm; compose; "
           "jam with me; practise the D major scale; ear training; echo game; metronome at ninety; "
           "live band; or what time is it";
}

} // namespace kelo::engine
