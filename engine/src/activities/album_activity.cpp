#include "activities/album_activity.h"

#include "activities/home_activity.h"
#include "activities/loading_activity.h"
#include "activities/pieces.h"

#include <utility>

namespace kelo::engine {

namespace {

constexpr double atOnce = 0.03; ///< seconds that nobody notices
constexpr double lookEvery = 0.05;

std::string announced(std::size_t number, const std::string &title)
{
    return "Number " + std::to_string(number) + ": " + title + ".";
}

/// False after saying that nothing from `song` on holds music.
bool playFrom(Session &session, std::size_t song, const Moment &now)
{
    if (song >= session.library.size()) {
        session.say("Your album is empty. S keeps what you play.", now);
        return false;
    }
    const std::string title = session.library.names()[song].title;
    return readFile(
        session, session.library.file(song), title,
        [&session, song, title](std::variant<Piece, ReadFault> read, const Moment &then) {
            auto *piece = std::get_if<Piece>(&read);
            if (!piece)
                return playFrom(session, song + 1, then);
            session.host.begin(
                std::make_unique<AlbumActivity>(session, song, Heard{title, std::move(*piece)}),
                then);
            return true;
        },
        now);
}

} // namespace

void playAlbum(Session &session, const Moment &now)
{
    refreshSongs(session);
    playFrom(session, session.library.firstFile(), now);
}

AlbumActivity::AlbumActivity(Session &shared, std::size_t song, const Heard &piece)
    : PlaybackActivity(shared, piece, "Your album. " + announced(1, piece.title))
    , first_(song)
    , song_(song)
{
}

void AlbumActivity::enter(const Moment &now)
{
    PlaybackActivity::enter(now);
    read(song_ + 1);
}

void AlbumActivity::ended(const Moment &)
{
    goesOn_ = !wanted_;
}

void AlbumActivity::advance(const Moment &now)
{
    PlaybackActivity::advance(now);
    if (std::exchange(goesOn_, false))
        turnTo(song_ + 1, true, now);
    else if (wanted_ && now.uptime >= nextLook_)
        look(0, now);
}

std::optional<double> AlbumActivity::deadline() const
{
    return wanted_ ? std::optional(nextLook_) : PlaybackActivity::deadline();
}

void AlbumActivity::next(const Request &, const Moment &now)
{
    turnTo(song_ + 1, true, now);
}

void AlbumActivity::previous(const Request &, const Moment &now)
{
    turnTo(song_ > first_ ? song_ - 1 : first_, false, now);
}

void AlbumActivity::turnTo(std::size_t song, bool forward, const Moment &now)
{
    wanted_ = true;
    forward_ = forward;
    read(song);
    look(atOnce, now);
}

/// Nothing is coming where the album has no such piece.
void AlbumActivity::read(std::size_t song)
{
    if (coming_ && coming_->song == song)
        return;
    coming_.reset();
    if (song >= first_ && song < session_.library.size())
        coming_ = Coming{song, session_.library.names()[song].title,
            std::make_unique<PieceLoader>(session_.library.file(song))};
}

/// Plays what is wanted where it has been read, and passes over files that hold no music.
void AlbumActivity::look(double patience, const Moment &now)
{
    while (coming_) {
        auto result = coming_->loader->take(patience);
        if (!result) {
            nextLook_ = now.uptime + lookEvery;
            return;
        }
        const Coming done = std::move(*std::exchange(coming_, {}));
        if (auto *piece = std::get_if<Piece>(&*result)) {
            wanted_ = false;
            song_ = done.song;
            say(announced(song_ - first_ + 1, done.title), now);
            play({done.title, std::move(*piece)}, now);
            return read(song_ + 1);
        }
        read(forward_ ? done.song + 1 : done.song - 1);
    }
    wanted_ = false;
    if (forward_) {
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
