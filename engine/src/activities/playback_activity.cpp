#include "activities/playback_activity.h"

#include "activities/pieces.h"
#include "music/midi_writer.h"
#include "songs/library.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int drumChannel = 9;
constexpr int slowest = 20; ///< percent
constexpr int fastest = 200;
constexpr int barsToSkip = 4;
constexpr double justBegun = 0.2; ///< a bar that is about to sound counts
constexpr double secondsToSkip = 8; ///< where a piece has no bars

} // namespace

Piece transposed(Piece piece, int semitones)
{
    for (Note &note : piece.notes) {
        if (note.channel != drumChannel)
            note.transpose(semitones);
    }
    piece.spelling = spellingOf(tonalityOf(piece.notes));
    piece.written.reset(); // which has the old key
    return piece;
}

PlaybackActivity::PlaybackActivity(
    Session &shared, Heard what, std::string announcement, Kind kind, std::optional<int> percent)
    : Activity(shared)
    , first_(std::move(what))
    , announcement_(std::move(announcement))
    , kind_(kind)
    , percent_(percent)
{
}

void PlaybackActivity::enter(const Moment &now)
{
    if (!announcement_.empty())
        say(announcement_, now);
    if (percent_) {
        session_.player.stop();
        tempoBefore_ = session_.player.tempo();
        session_.player.setTempo(std::clamp(*percent_, slowest, fastest) / 100.0, now.uptime);
    }
    play(std::move(first_), now);
}

void PlaybackActivity::leave(const Moment &now)
{
    Activity::leave(now);
    if (percent_)
        session_.player.setTempo(tempoBefore_, now.uptime);
}

void PlaybackActivity::play(Heard what, const Moment &now)
{
    session_.heard = std::move(what);
    session_.player.start(session_.heard->piece, session_.heard->title, now.uptime);
    playing_ = true;
}

void PlaybackActivity::advance(const Moment &now)
{
    const bool goesOn = session_.player.playing() || session_.player.paused();
    if (std::exchange(playing_, goesOn) && !goesOn) {
        session_.metronome.stop();
        ended(now);
    }
}

bool PlaybackActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<PlaybackActivity> handlers[] = {
        {Action::Start, &PlaybackActivity::again},
        {Action::Again, &PlaybackActivity::again},
        {Action::StartOver, &PlaybackActivity::again},
        {Action::Next, &PlaybackActivity::next},
        {Action::Previous, &PlaybackActivity::previous},
        {Action::PlayBars, &PlaybackActivity::toBars},
        {Action::Transpose, &PlaybackActivity::transpose},
    };
    if (request.action == Action::Keep
        && (kind_ == Kind::MadeUp || !session_.recorder.lastTake(now.uptime))) {
        keep(now);
        return true;
    }
    return handle(*this, handlers, request, now);
}

void PlaybackActivity::note(int, int, const Moment &)
{
    kind_ = Kind::Known; // from now on what is kept is the player's
}

void PlaybackActivity::keep(const Moment &now)
{
    const std::string &title = session_.heard->title;
    const auto &songs = session_.library.names();
    if (kind_ == Kind::Known && std::ranges::find(songs, title, &SongName::title) != songs.end()) {
        say(title + " is among your songs already.", now);
        return;
    }
    const auto bytes = writeMidiFile(session_.heard->piece);
    const bool kept = keepFile(session_, title, ".mid", std::string(bytes.begin(), bytes.end()));
    refreshSongs(session_);
    say(kept ? "I kept this piece among your songs." : "I couldn't write it to the songs folder.",
        now);
}

void PlaybackActivity::again(const Request &, const Moment &now)
{
    session_.metronome.stop();
    session_.player.again(now.uptime);
    playing_ = true;
}

void PlaybackActivity::next(const Request &, const Moment &now)
{
    skip(barsToSkip, now);
}

void PlaybackActivity::previous(const Request &, const Moment &now)
{
    skip(-barsToSkip, now);
}

void PlaybackActivity::skip(int bars, const Moment &now)
{
    const auto &starts = session_.heard->piece->bars;
    const double at = session_.player.position(now.uptime) + justBegun;
    if (starts.empty()) {
        session_.player.seek(at + bars * secondsToSkip / barsToSkip, now.uptime);
    } else {
        const auto current = std::ranges::upper_bound(starts, at) - starts.begin() - 1;
        const auto last = static_cast<std::ptrdiff_t>(starts.size()) - 1;
        const auto wanted = std::clamp<std::ptrdiff_t>(current + bars, 0, last);
        session_.player.seek(starts[static_cast<std::size_t>(wanted)], now.uptime);
    }
    session_.metronome.stop();
    playing_ = true;
}

void PlaybackActivity::toBars(const Request &request, const Moment &now)
{
    const Piece &piece = session_.heard->piece;
    const auto place = barPlace(piece, request.bars->first);
    if (!place) {
        const std::size_t last = piece.barNumbers.empty()
            ? piece.bars.size()
            : static_cast<std::size_t>(std::ranges::max(piece.barNumbers));
        say(last == 0 ? "Nobody has drawn bars in this piece."
                      : "This piece has " + std::to_string(last) + " bars.",
            now);
        return;
    }
    session_.metronome.stop();
    session_.player.seek(piece.bars[*place], now.uptime);
    playing_ = true;
}

void PlaybackActivity::transpose(const Request &request, const Moment &now)
{
    int by = request.number.value_or(request.key ? 0 : 2) * (request.on.value_or(true) ? 1 : -1);
    if (request.key) {
        by = (request.key->tonic - tonalityOf(session_.heard->piece->notes).tonic + 12) % 12;
        by -= by > 6 ? 12 : 0;
    }
    Heard moved = *session_.heard;
    moved.piece = transposed(std::move(moved.piece), std::clamp(by, -24, 24));
    say("In " + nameOf(tonalityOf(moved.piece->notes)) + ".", now);
    play(std::move(moved), now);
}

std::optional<Beat> PlaybackActivity::beat(const Moment &now) const
{
    if (!session_.player.playing())
        return {};
    return beatOf(session_.heard->piece, session_.player, now);
}

std::string PlaybackActivity::place() const
{
    return "This is " + session_.heard->title + ".";
}

std::string_view PlaybackActivity::help() const
{
    return "Return pauses the piece and carries on. Space plays it again. Right skips ahead, left "
           "goes back. Minus and equals change the tempo. Zero goes home.";
}

std::string_view PlaybackActivity::suggestions() const
{
    return "pause; slower; play bar five; transpose it to G; teach me this; or stop";
}

} // namespace kelo::engine
