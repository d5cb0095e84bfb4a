#include "activities/album_activity.h"

#include "activities/home_activity.h"
#include "activities/pieces.h"

#include <utility>

namespace kelo::engine {

namespace {

std::string announced(std::size_t number, const std::string &title)
{
    return "Number " + std::to_string(number) + ": " + title + ".";
}

} // namespace

AlbumActivity::AlbumActivity(Session &shared, std::size_t first, const Heard &piece)
    : PlaybackActivity(shared, piece, "Your album. " + announced(1, piece.title))
    , first_(first)
    , song_(first)
{
}

void AlbumActivity::ended(const Moment &)
{
    goesOn_ = true;
}

void AlbumActivity::advance(const Moment &now)
{
    PlaybackActivity::advance(now);
    if (std::exchange(goesOn_, false))
        toTrack(song_ + 1, true, now);
}

void AlbumActivity::next(const Request &, const Moment &now)
{
    toTrack(song_ + 1, true, now);
}

void AlbumActivity::previous(const Request &, const Moment &now)
{
    toTrack(song_ > first_ ? song_ - 1 : first_, false, now);
}

/// Passes over files that hold no music.
void AlbumActivity::toTrack(std::size_t song, bool forward, const Moment &now)
{
    const auto &names = session_.library.names();
    for (; song < names.size() && song >= first_; forward ? ++song : --song) {
        auto read = session_.library.load(song);
        if (auto *piece = std::get_if<Piece>(&read)) {
            song_ = song;
            say(announced(song - first_ + 1, names[song].title), now);
            play({names[song].title, std::move(*piece)}, now);
            return;
        }
    }
    if (forward) {
        begin<HomeActivity>(now);
        say("That was your album.", now);
    }
}

std::string AlbumActivity::place() const
{
    return "This is your album. " + PlaybackActivity::place();
}

std::string_view AlbumActivity::help() const
{
    return "Right goes to the next piece of your album, left to the one before. Return pauses. "
           "Zero goes home.";
}

} // namespace kelo::engine
