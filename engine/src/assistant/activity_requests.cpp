#include "assistant/activity_requests.h"

#include "activities/album_activity.h"
#include "activities/band_activity.h"
#include "activities/compose_activity.h"
#include "activities/ear_training_activity.h"
#include "activities/jam_activity.h"
#include "activities/jazz_activity.h"
#include "activities/lesson_activity.h"
#include "activities/menu_activity.h"
#include "activities/metronome_activity.h"
#include "activities/pieces.h"
#include "activities/playback_activity.h"
#include "activities/studio_activity.h"
#include "composing/accompaniment.h"
#include "composing/composer.h"
#include "composing/variations.h"
#include "lessons/excerpt.h"
#include "lessons/jazz_course.h"
#include "music/midi_writer.h"
#include "theory/pitch_names.h"

#include <algorithm>
#include <random>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t mostNames = 16; ///< that are said in one breath

} // namespace

void ActivityRequests::openMenu(const Request &, const Moment &now)
{
    begin<MenuActivity>(now, MenuActivity::Entry::Spoken);
}

void ActivityRequests::playSong(const Request &request, const Moment &now)
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

void ActivityRequests::learn(const Request &request, const Moment &now)
{
    std::optional<Heard> song;
    const bool this_one = !request.song && !request.number;
    if (this_one && session_.heard)
        song = session_.heard;
    else if (chooseSong(session_, request, now))
        song = loadSong(session_, session_.songs.current(), now);
    if (!song)
        return;
    if (request.hands)
        session_.hands = *request.hands;
    Lesson lesson(std::move(song->piece), song->title, session_.hands);
    if (lesson.empty()) {
        session_.say("There is nothing to learn in that song for these hands.", now);
        return;
    }
    if (request.hands)
        session_.wire.send("hands", nameOf(session_.hands));
    begin<LessonActivity>(now, std::move(lesson), request.bars);
}

void ActivityRequests::listSongs(const Request &, const Moment &now)
{
    session_.say(session_.songs.list(), now);
}

void ActivityRequests::countSongs(const Request &, const Moment &now)
{
    session_.say(session_.songs.count(), now);
}

void ActivityRequests::keep(const Request &, const Moment &now)
{
    const auto take = session_.recorder.lastTake(now.uptime);
    if (!take) {
        session_.say("You haven't played anything yet.", now);
        return;
    }
    const auto bytes = writeMidiFile(*take);
    const bool kept = !keepFile(
        session_, "Played " + stampOf(now), ".mid", std::string(bytes.begin(), bytes.end()))
                           .empty();
    session_.library.refresh();
    session_.songs.setSongs(session_.library.names());
    session_.say(
        kept ? "I kept it among your songs." : "I couldn't write it to the songs folder.", now);
}

void ActivityRequests::playKept(const Request &, const Moment &now)
{
    if (auto take = session_.recorder.lastTake(now.uptime))
        begin<PlaybackActivity>(
            now, Heard{"What you played", std::move(*take)}, "This is what you played.");
    else
        session_.say("You haven't played anything yet.", now);
}

/// One note, beside whatever plays.
void ActivityRequests::playNote(const Request &request, const Moment &now)
{
    constexpr double length = 1.2;
    Piece piece;
    piece.notes.push_back({0, length, std::clamp(*request.pitch, 21, 108), 84, 0, 0});
    addMessages(piece);
    if (!session_.player.playing() && !session_.player.paused())
        session_.player.demonstrate(std::move(piece), now.uptime);
}

void ActivityRequests::playBars(const Request &request, const Moment &now)
{
    if (!session_.heard) {
        session_.say("I don't know of which piece.", now);
        return;
    }
    begin<PlaybackActivity>(now, *session_.heard, "");
    session_.host.perform(request, now);
}

/// The notes of what was played last, by the player or to them.
void ActivityRequests::noteNames(const Request &, const Moment &now)
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

void ActivityRequests::transpose(const Request &request, const Moment &now)
{
    if (!session_.heard) {
        session_.say("I don't know which piece.", now);
        return;
    }
    begin<PlaybackActivity>(now, *session_.heard, "");
    session_.host.perform(request, now);
}

void ActivityRequests::nextHands(const Request &, const Moment &now)
{
    setHands({.action = Action::SetHands, .hands = nextOf(session_.hands)}, now);
}

void ActivityRequests::setHands(const Request &request, const Moment &now)
{
    session_.hands = request.hands.value_or(Hands::Both);
    session_.wire.send("hands", nameOf(session_.hands));
    session_.say(session_.hands == Hands::Both ? "Both hands."
            : session_.hands == Hands::Right   ? "Right hand."
                                               : "Left hand.",
        now);
}

void ActivityRequests::trainEars(const Request &, const Moment &now)
{
    begin<EarTrainingActivity>(now, session_.seedAt(now));
}

/// With a piece it keeps the piece's beat; otherwise it is an activity of its own.
void ActivityRequests::metronome(const Request &request, const Moment &now)
{
    auto beat = current_->beat(now);
    if (!beat) {
        begin<MetronomeActivity>(now, request);
        return;
    }
    if (!request.on.value_or(request.number || !session_.metronome.ticking())) {
        session_.metronome.stop();
        session_.say("Metronome off.", now);
        return;
    }
    if (request.number) {
        session_.player.setTempo(
            session_.player.tempo() * std::clamp(*request.number, 30, 300) / beat->tempo,
            now.uptime);
        beat = current_->beat(now);
    }
    session_.metronome.start(beat->tempo, beat->beats, now.uptime, beat->nextBar);
    session_.say("Metronome at " + std::to_string(beat->tempo) + ".", now);
}

void ActivityRequests::countIn(const Request &request, const Moment &now)
{
    Metronome &metronome = session_.metronome;
    const auto beat = current_->beat(now);
    const int tempo = request.number.value_or(beat ? beat->tempo : metronome.tempo());
    const int beats = request.metre ? request.metre->beats : beat ? beat->beats : metronome.beats();
    metronome.countIn(tempo, beats, now.uptime);
}

void ActivityRequests::band(const Request &request, const Moment &now)
{
    if (request.on && !*request.on)
        session_.say("The band is off.", now);
    else
        begin<BandActivity>(now, request.number);
}

void ActivityRequests::noLesson(const Request &, const Moment &now)
{
    session_.say("There is no lesson now.", now);
}

void ActivityRequests::album(const Request &, const Moment &now)
{
    session_.library.refresh();
    session_.songs.setSongs(session_.library.names());
    for (std::size_t song = session_.library.firstFile(); song < session_.library.size(); ++song) {
        auto read = session_.library.load(song);
        if (auto *piece = std::get_if<Piece>(&read)) {
            begin<AlbumActivity>(
                now, song, Heard{session_.library.names()[song].title, std::move(*piece)});
            return;
        }
    }
    session_.say("Your album is empty. S keeps what you play.", now);
}

void ActivityRequests::makeUp(const Request &request, const Moment &now)
{
    const Score score = kelo::engine::makeUp(
        {request.mood.value_or(moodAt(now.hour())), request.key}, session_.seedAt(now));
    begin<PlaybackActivity>(
        now, Heard{score.title, pieceOf(score)}, score.title + ".", PlaybackActivity::Kind::MadeUp);
}

/// What has not been done for longest among what can be done now.
void ActivityRequests::surprise(const Request &, const Moment &now)
{
    std::vector<Action> possible{
        Action::MakeUp, Action::Jazz, Action::EarTraining, Action::Jam, Action::ComposingIdea};
    if (session_.composition || session_.heard) {
        for (const Action action : {Action::Lullaby, Action::VideoGame, Action::FilmScore})
            possible.push_back(action);
    }
    if (session_.library.firstFile() < session_.library.size())
        possible.push_back(Action::Album);
    std::minstd_rand random(session_.seedAt(now));
    std::ranges::shuffle(possible, random);
    const auto lastDone = [this](Action action) {
        const auto found = session_.done.find(action);
        return found == session_.done.end() ? -1.0 : found->second;
    };
    session_.host.perform({*std::ranges::min_element(possible, {}, lastDone)}, now);
}

void ActivityRequests::compose(const Request &request, const Moment &now)
{
    begin<ComposeActivity>(now, request.metre);
}

/// What only composing can do begins with composing.
void ActivityRequests::inCompose(const Request &request, const Moment &now)
{
    begin<ComposeActivity>(now, request.metre);
    session_.host.perform(request, now);
}

void ActivityRequests::variation(const Request &, const Moment &now)
{
    const auto theme = usersTheme(session_, now);
    if (!theme)
        return;
    const int which = static_cast<int>(session_.seedAt(now) % variationCount);
    Score score = variationOf(*theme, which);
    accompany(score, {"Left hand"}, Figure::Broken, 48, 56);
    const std::string title = theme->title.empty() ? "Your piece" : theme->title;
    begin<PlaybackActivity>(now, Heard{title, pieceOf(score)},
        title + ", " + std::string(variationName(which)) + ".", PlaybackActivity::Kind::MadeUp);
}

void ActivityRequests::arrangement(Arrangement which, const Moment &now)
{
    const auto theme = usersTheme(session_, now);
    if (!theme)
        return;
    const Score score = arrange(*theme, which);
    begin<PlaybackActivity>(
        now, Heard{score.title, pieceOf(score)}, score.title + ".", PlaybackActivity::Kind::MadeUp);
}

void ActivityRequests::lullaby(const Request &, const Moment &now)
{
    arrangement(Arrangement::Lullaby, now);
}

void ActivityRequests::videoGame(const Request &, const Moment &now)
{
    arrangement(Arrangement::VideoGame, now);
}

void ActivityRequests::filmScore(const Request &, const Moment &now)
{
    arrangement(Arrangement::FilmScore, now);
}

void ActivityRequests::jam(const Request &, const Moment &now)
{
    begin<JamActivity>(now);
}

void ActivityRequests::jazz(const Request &request, const Moment &now)
{
    const int last = static_cast<int>(jazzLessonCount);
    if (request.number && (*request.number < 1 || *request.number > last))
        session_.say("There are " + std::to_string(last) + " lessons.", now);
    else
        begin<JazzActivity>(now,
            request.number ? std::optional(static_cast<std::size_t>(*request.number) - 1)
                           : std::nullopt);
}

void ActivityRequests::logic(const Request &, const Moment &now)
{
    begin<StudioActivity>(now, StudioActivity::Program::Logic);
}

void ActivityRequests::reaper(const Request &, const Moment &now)
{
    begin<StudioActivity>(now, StudioActivity::Program::Reaper);
}

} // namespace kelo::engine
