#pragma once

#include "activities/activity.h"
#include "composing/arrangements.h"

namespace kelo::engine {

/// Opens the activities that begin with no song.
class ActivityRequests {
public:
    /// `current` is the activity that the user is in, never empty.
    ActivityRequests(Session &session, const std::unique_ptr<Activity> &current)
        : session_(session)
        , current_(current)
    {
    }

    void openMenu(const Request &request, const Moment &now);
    void trainEars(const Request &request, const Moment &now);
    void echo(const Request &request, const Moment &now);
    void intervals(const Request &request, const Moment &now);
    void chords(const Request &request, const Moment &now);
    void exercise(const Request &request, const Moment &now);
    void drone(const Request &request, const Moment &now);
    void duet(const Request &request, const Moment &now);
    void metronome(const Request &request, const Moment &now);
    void metronomeAccent(const Request &request, const Moment &now);
    void countIn(const Request &request, const Moment &now);
    void band(const Request &request, const Moment &now);
    void noLesson(const Request &request, const Moment &now);
    void album(const Request &request, const Moment &now);
    void makeUp(const Request &request, const Moment &now);
    void surprise(const Request &request, const Moment &now);
    void compose(const Request &request, const Moment &now);
    void inCompose(const Request &request, const Moment &now);
    void newPiece(const Request &request, const Moment &now);
    void startOver(const Request &request, const Moment &now);
    void variation(const Request &request, const Moment &now);
    void lullaby(const Request &request, const Moment &now);
    void videoGame(const Request &request, const Moment &now);
    void filmScore(const Request &request, const Moment &now);
    void jam(const Request &request, const Moment &now);
    void jazz(const Request &request, const Moment &now);
    void logic(const Request &request, const Moment &now);
    void reaper(const Request &request, const Moment &now);
    void nothing(const Request &, const Moment &) { }

    static constexpr Handler<ActivityRequests> handlers[] = {
        {Action::OpenMenu, &ActivityRequests::openMenu},
        {Action::EarTraining, &ActivityRequests::trainEars},
        {Action::EchoGame, &ActivityRequests::echo},
        {Action::IntervalTraining, &ActivityRequests::intervals},
        {Action::ChordTraining, &ActivityRequests::chords},
        {Action::Scale, &ActivityRequests::exercise},
        {Action::Arpeggio, &ActivityRequests::exercise},
        {Action::Cadence, &ActivityRequests::exercise},
        {Action::FingerPattern, &ActivityRequests::exercise},
        {Action::Drone, &ActivityRequests::drone},
        {Action::PlayWithMe, &ActivityRequests::duet},
        {Action::Metronome, &ActivityRequests::metronome},
        {Action::MetronomeAccent, &ActivityRequests::metronomeAccent},
        {Action::CountIn, &ActivityRequests::countIn},
        {Action::Band, &ActivityRequests::band},
        {Action::Drop, &ActivityRequests::noLesson},
        {Action::Album, &ActivityRequests::album},
        {Action::StartOver, &ActivityRequests::startOver},
        {Action::MakeUp, &ActivityRequests::makeUp},
        {Action::Surprise, &ActivityRequests::surprise},
        {Action::Compose, &ActivityRequests::compose},
        {Action::PlayAsBand, &ActivityRequests::inCompose},
        {Action::ReadBack, &ActivityRequests::inCompose},
        {Action::Variation, &ActivityRequests::variation},
        {Action::SavePiece, &ActivityRequests::inCompose},
        {Action::NewPiece, &ActivityRequests::newPiece},
        {Action::ComposingIdea, &ActivityRequests::inCompose},
        {Action::Lullaby, &ActivityRequests::lullaby},
        {Action::VideoGame, &ActivityRequests::videoGame},
        {Action::FilmScore, &ActivityRequests::filmScore},
        {Action::Jam, &ActivityRequests::jam},
        {Action::JamAgain, &ActivityRequests::jam},
        {Action::Jazz, &ActivityRequests::jazz},
        {Action::JazzIdea, &ActivityRequests::jazz},
        {Action::LogicControl, &ActivityRequests::logic},
        {Action::ReaperControl, &ActivityRequests::reaper},
        {Action::BackALevel, &ActivityRequests::nothing},
    };

private:
    void arrangement(Arrangement which, const Moment &now);
    template <typename Next, typename... Arguments>
    void begin(const Moment &now, Arguments &&...arguments)
    {
        session_.host.begin(
            std::make_unique<Next>(session_, std::forward<Arguments>(arguments)...), now);
    }

    Session &session_;
    const std::unique_ptr<Activity> &current_;
};

} // namespace kelo::engine
