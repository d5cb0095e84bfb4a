#include "activities/menu_activity.h"

#include "activities/pieces.h"

namespace kelo::engine {

void MenuActivity::enter(const Moment &now)
{
    refreshSongs(session_);
    if (entry_ == Entry::Spoken)
        say("Song menu. " + session_.songs.describe() + " Space learns it, Return plays it.", now);
}

bool MenuActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<MenuActivity> handlers[] = {
        {Action::Start, &MenuActivity::learn},
        {Action::Agree, &MenuActivity::learn},
        {Action::Next, &MenuActivity::next},
        {Action::Previous, &MenuActivity::previous},
        {Action::Again, &MenuActivity::again},
        {Action::CarryOn, &MenuActivity::carryOn},
        {Action::Stop, &MenuActivity::stop},
    };
    return handle(*this, handlers, request, now);
}

void MenuActivity::pauseOrCarryOn(const Moment &now)
{
    if (session_.player.playing() || session_.player.paused())
        Activity::pauseOrCarryOn(now);
    else
        play(now);
}

void MenuActivity::play(const Moment &now)
{
    if (auto song = loadSong(session_, session_.songs.current(), now)) {
        say(song->title + ".", now);
        session_.heard = std::move(*song);
        session_.player.start(session_.heard->piece, session_.heard->title, now.uptime);
    }
}

void MenuActivity::learn(const Request &, const Moment &now)
{
    session_.host.perform(
        {.action = Action::Learn, .number = static_cast<int>(session_.songs.current()) + 1}, now);
}

void MenuActivity::next(const Request &, const Moment &now)
{
    session_.songs.next();
    describe(now);
}

void MenuActivity::previous(const Request &, const Moment &now)
{
    session_.songs.previous();
    describe(now);
}

void MenuActivity::describe(const Moment &now)
{
    session_.player.stop();
    session_.metronome.stop();
    say(session_.songs.describe(), now);
}

void MenuActivity::again(const Request &, const Moment &now)
{
    if (session_.player.playing() || session_.player.paused())
        session_.player.again(now.uptime);
    else
        say(session_.songs.describe(), now);
}

void MenuActivity::carryOn(const Request &, const Moment &now)
{
    if (session_.player.paused())
        resume(now);
    else if (!session_.player.playing())
        play(now);
}

void MenuActivity::stop(const Request &, const Moment &)
{
    session_.player.stop();
    session_.metronome.stop();
}

std::optional<Beat> MenuActivity::beat(const Moment &now) const
{
    if (!session_.player.playing() || !session_.heard)
        return {};
    return beatOf(session_.heard->piece, session_.player, now);
}

std::string MenuActivity::place() const
{
    std::string text = "You are in the song menu. " + session_.songs.describe();
    if (session_.heard && (session_.player.playing() || session_.player.paused()))
        text += " This is " + session_.heard->title + ".";
    return text;
}

std::string_view MenuActivity::help() const
{
    return "Left and right go through the songs. Space starts the lesson for one, "
           "Return plays it. L reads the list, N counts. Minus and equals change the tempo. "
           "Zero goes home.";
}

std::string_view MenuActivity::suggestions() const
{
    return "next; play it; teach me this; play song three; slower; or list the songs";
}

} // namespace kelo::engine
