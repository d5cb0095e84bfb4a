#include "assistant/activity_requests.h"

#include "activities/album_activity.h"
#include "activities/band_activity.h"
#include "activities/compose_activity.h"
#include "activities/drone_activity.h"
#include "activities/duet_activity.h"
#include "activities/ear_training_activity.h"
#include "activities/exercise_activity.h"
#include "activities/jam_activity.h"
#include "activities/jazz_activity.h"
#include "activities/menu_activity.h"
#include "activities/metronome_activity.h"
#include "activities/pieces.h"
#include "activities/playback_activity.h"
#include "activities/studio_activity.h"
#include "composing/accompaniment.h"
#include "composing/composer.h"
#include "composing/variations.h"
#include "lessons/jazz_course.h"
#include "training/chord_trainer.h"
#include "training/ear_trainer.h"
#include "training/echo_game.h"

#include <algorithm>
#include <random>
#include <utility>

namespace kelo::engine {

void ActivityRequests::openMenu(const Request &, const Moment &now)
{
    begin<MenuActivity>(now, MenuActivity::Entry::Spoken);
}

void ActivityRequests::trainEars(const Request &, const Moment &now)
{
    begin<EarTrainingActivity>(now, std::make_unique<EarTrainer>(session_.seedAt(now)));
}

void ActivityRequests::echo(const Request &, const Moment &now)
{
    begin<EarTrainingActivity>(now, std::make_unique<EchoGame>(session_.seedAt(now)));
}

void ActivityRequests::intervals(const Request &, const Moment &now)
{
    begin<EarTrainingActivity>(
        now, std::make_unique<ChordTrainer>(session_.seedAt(now), ChordTrainer::First::Intervals));
}

void ActivityRequests::chords(const Request &, const Moment &now)
{
    begin<EarTrainingActivity>(
        now, std::make_unique<ChordTrainer>(session_.seedAt(now), ChordTrainer::First::Chords));
}

void ActivityRequests::exercise(const Request &request, const Moment &now)
{
    begin<ExerciseActivity>(now, request);
}

void ActivityRequests::drone(const Request &request, const Moment &now)
{
    if (request.on && !*request.on)
        session_.say("There is no drone now.", now);
    else
        begin<DroneActivity>(now, request);
}

void ActivityRequests::duet(const Request &request, const Moment &now)
{
    if (auto take = session_.recorder.lastTake(now.uptime))
        begin<DuetActivity>(now, std::move(*take), request.number.value_or(100));
    else
        session_.say("You haven't played anything yet.", now);
}

/// With a piece it keeps the piece's beat; otherwise it is an activity of its own.
void ActivityRequests::metronome(const Request &request, const Moment &now)
{
    auto beat = current_->beat(now);
    if (!beat) {
        begin<MetronomeActivity>(now, request);
        return;
    }
    if (!request.on.value_or(request.number || request.parts || !session_.metronome.ticking())) {
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
    if (request.parts)
        session_.metronome.divide(*request.parts, now.uptime);
    session_.metronome.start(beat->tempo, beat->beats, now.uptime, beat->nextBar);
    session_.say("Metronome at " + std::to_string(beat->tempo) + ".", now);
}

void ActivityRequests::metronomeAccent(const Request &request, const Moment &now)
{
    const bool on = request.on.value_or(true);
    session_.metronome.setAccent(on);
    session_.say(
        on ? "The metronome accents the first beat." : "The metronome accents no beat.", now);
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
    playAlbum(session_, now);
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

/// The piece that is there is saved first: only while composing is it known to be at hand.
void ActivityRequests::newPiece(const Request &, const Moment &now)
{
    begin<ComposeActivity>(now, std::nullopt);
    session_.host.perform({Action::Compose}, now);
}

void ActivityRequests::startOver(const Request &, const Moment &now)
{
    session_.say("Nothing goes on that could start over.", now);
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
