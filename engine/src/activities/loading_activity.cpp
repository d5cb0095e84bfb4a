#include "activities/loading_activity.h"

#include "activities/home_activity.h"
#include "activities/pieces.h"
#include "activities/playback_activity.h"
#include "protocol/text.h"

#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double atOnce = 0.03; ///< seconds that nobody notices
constexpr double lookEvery = 0.05;
constexpr double firstWord = 1;
constexpr double wordEvery = 5;

/// False after saying why it cannot be played.
bool play(Session &session, std::variant<Piece, ReadFault> read, const std::string &title,
    const Moment &now)
{
    auto piece = heardFrom(session, std::move(read), title, now);
    if (!piece)
        return false;
    const bool whole = !piece->piece->endsEarly;
    session.host.begin(std::make_unique<PlaybackActivity>(session, std::move(*piece),
                           title + (whole ? "." : ". The file is not whole: it ends early.")),
        now);
    return true;
}

} // namespace

void playFile(Session &session, const std::filesystem::path &file, const Moment &now)
{
    const std::string title = oneLine(file.stem().string());
    readFile(
        session, file, title,
        [&session, title](std::variant<Piece, ReadFault> read, const Moment &then) {
            return play(session, std::move(read), title, then);
        },
        now);
}

bool readFile(Session &session, const std::filesystem::path &file, const std::string &title,
    WhenRead whenRead, const Moment &now)
{
    auto loader = std::make_unique<PieceLoader>(file);
    if (auto read = loader->take(atOnce))
        return whenRead(std::move(*read), now);
    session.host.begin(
        std::make_unique<LoadingActivity>(session, std::move(loader), title, std::move(whenRead)),
        now);
    return true;
}

LoadingActivity::LoadingActivity(
    Session &shared, std::unique_ptr<PieceLoader> loader, std::string title, WhenRead whenRead)
    : Activity(shared)
    , loader_(std::move(loader))
    , title_(std::move(title))
    , whenRead_(std::move(whenRead))
{
}

void LoadingActivity::enter(const Moment &now)
{
    nextLook_ = now.uptime + lookEvery;
    nextWord_ = now.uptime + firstWord;
}

void LoadingActivity::advance(const Moment &now)
{
    if (now.uptime < nextLook_)
        return;
    nextLook_ = now.uptime + lookEvery;
    if (auto read = loader_->take()) {
        if (!whenRead_(std::move(*read), now))
            begin<HomeActivity>(now);
    } else if (now.uptime >= nextWord_) {
        nextWord_ = now.uptime + wordEvery;
        say("I am reading " + title_ + ": " + std::to_string(std::lround(loader_->progress() * 100))
                + " percent.",
            now);
    }
}

std::string LoadingActivity::place() const
{
    return "I am reading " + title_ + ".";
}

std::string_view LoadingActivity::help() const
{
    return "A large file is being read. Press Return to leave it.";
}

} // namespace kelo::engine
