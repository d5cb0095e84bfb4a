#include "assistant/song_requests.h"

#include "activities/hands_activity.h"
#include "activities/lesson_activity.h"
#include "activities/loading_activity.h"
#include "activities/pieces.h"
#include "activities/playback_activity.h"
#include "lessons/excerpt.h"
#include "music/midi_writer.h"
#include "theory/pitch_names.h"
#include "written/performance.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t mostNames = 16; ///< that are said in one breath

} // namespace

void SongRequests::playSong(const Request &request, const Moment &now)
{
    const bool this_one = !request.song && !request.number;
    if (this_one && session_.heard) {
        begin<PlaybackActivity>(now, *session_.heard, session_.heard->title + ".");
        return;
    }
    if (!chooseSong(session_, request, now))
        return;
    if (auto song = loadSong(session_, session_.songs.current(), now)) {
        const std::string announcement = song->title + ".";
        begin<PlaybackActivity>(now, std::move(*song), announcement);
    }
}

void SongRequests::learn(const Request &request, const Moment &now)
{
    const auto song = askedSong(session_, request, now);
    if (!song || askForHands(session_, *song, request, now))
        return;
    if (request.hands)
        session_.hands = *request.hands;
    Lesson lesson(studied(song->piece), song->title, session_.hands);
    if (lesson.empty()) {
        session_.say("There is nothing to learn in that song for these hands.", now);
        return;
    }
    if (request.hands)
        session_.wire.send("hands", nameOf(session_.hands));
    begin<LessonActivity>(now, std::move(lesson), request.bars);
}

void SongRequests::goOnLearning(const Request &, const Moment &now)
{
    const auto &songs = session_.library.names();
    const auto left = std::ranges::find(songs, session_.progress.lastPiece(), &SongName::title);
    if (left == songs.end())
        session_.say(session_.progress.lastPiece().empty()
                ? "No lesson waits for you. Say teach me, and the name of a song."
                : "Your lesson on " + session_.progress.lastPiece()
                    + " goes on once you play its file again and say: teach me this.",
            now);
    else
        learn({.action = Action::Learn, .number = static_cast<int>(left - songs.begin()) + 1}, now);
}

void SongRequests::chooseHands(const Request &, const Moment &now)
{
    session_.say("There is nothing to choose between now.", now);
}

void SongRequests::listSongs(const Request &, const Moment &now)
{
    session_.say(session_.songs.list(), now);
}

void SongRequests::countSongs(const Request &, const Moment &now)
{
    session_.say(session_.songs.count(), now);
}

void SongRequests::keep(const Request &, const Moment &now)
{
    const auto take = session_.recorder.lastTake(now.uptime);
    if (!take) {
        session_.say("You haven't played anything yet.", now);
        return;
    }
    const auto bytes = writeMidiFile(*take);
    const bool kept = keepFile(
        session_, "Played " + stampOf(now), ".mid", std::string(bytes.begin(), bytes.end()));
    refreshSongs(session_);
    session_.say(
        kept ? "I kept it among your songs." : "I couldn't write it to the songs folder.", now);
}

void SongRequests::playKept(const Request &request, const Moment &now)
{
    if (auto take = session_.recorder.lastTake(now.uptime))
        begin<PlaybackActivity>(now, Heard{"What you played", std::move(*take)},
            "This is what you played.", PlaybackActivity::Kind::Known, request.number);
    else
        session_.say("You haven't played anything yet.", now);
}

void SongRequests::playDownload(const Request &, const Moment &now)
{
    const auto file = newestPiece(session_.downloads);
    if (file.empty())
        session_.say("There is no MIDI file and no MusicXML score among your downloads.", now);
    else
        playFile(session_, file, now);
}

/// One note, beside whatever plays.
void SongRequests::playNote(const Request &request, const Moment &now)
{
    constexpr double length = 1.2;
    Piece piece;
    piece.notes.emplace_back(0, length, std::clamp(*request.pitch, 21, 108), 84, 0, 0);
    measureLength(piece);
    if (!session_.player.playing() && !session_.player.paused())
        session_.player.demonstrate(std::move(piece), now.uptime);
}

void SongRequests::playBars(const Request &request, const Moment &now)
{
    if (!session_.heard) {
        session_.say("I don't know of which piece.", now);
        return;
    }
    begin<PlaybackActivity>(now, *session_.heard, "");
    session_.host.perform(request, now);
}

/// The notes of what was played last, by the player or to them.
void SongRequests::noteNames(const Request &, const Moment &now)
{
    std::optional<Piece> piece = session_.recorder.lastTake(now.uptime);
    if (!piece && session_.heard)
        piece = session_.heard->piece;
    const auto excerpts = piece ? excerptsOf(*piece, Hands::Both) : std::vector<Excerpt>{};
    if (excerpts.empty()) {
        session_.say("Nothing has been played yet.", now);
        return;
    }
    std::string names;
    std::size_t count = 0;
    for (const Step &step : excerpts.front().steps) {
        if (++count > mostNames)
            break;
        names += (names.empty() ? "" : ", ") + pitchNames(step.pitches, piece->spelling);
    }
    session_.say(names + ".", now);
}

void SongRequests::transpose(const Request &request, const Moment &now)
{
    if (!session_.heard) {
        session_.say("I don't know which piece.", now);
        return;
    }
    begin<PlaybackActivity>(now, *session_.heard, "");
    session_.host.perform(request, now);
}

void SongRequests::nextHands(const Request &, const Moment &now)
{
    setHands({.action = Action::SetHands, .hands = nextOf(session_.hands)}, now);
}

void SongRequests::setHands(const Request &request, const Moment &now)
{
    session_.hands = request.hands.value_or(Hands::Both);
    session_.wire.send("hands", nameOf(session_.hands));
    session_.say(session_.hands == Hands::Both ? "Both hands."
            : session_.hands == Hands::Right   ? "Right hand."
                                               : "Left hand.",
        now);
}

} // namespace kelo::engine
