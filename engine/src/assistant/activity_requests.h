#pragma once

#include "activities/activity.h"
#include "composing/arrangements.h"

namespace kelo::engine {

/// Opens activities, and does with songs and notes what needs none.
class ActivityRequests {
public:
    /// `current` is the activity that the user is in, never empty.
    ActivityRequests(Session &session, const std::unique_ptr<Activity> &current)
        : session_(session)
        , current_(current)
    {
    }

    void openMenu(const Request &request, const Moment &now);
    void playSong(const Request &request, const Moment &now);
    void learn(const Request &request, const Moment &now);
    void listSongs(const Request &request, const Moment &now);
    void countSongs(const Request &request, const Moment &now);
    void keep(const Request &request, const Moment &now);
    void playKept(const Request &request, const Moment &now);
    void playNote(const Request &request, const Moment &now);
    void playBars(const Request &request, const Moment &now);
    void noteNames(const Request &request, const Moment &now);
    void transpose(const Request &request, const Moment &now);
    void nextHands(const Request &request, const Moment &now);
    void setHands(const Request &request, const Moment &now);
    void trainEars(const Request &request, const Moment &now);
    void metronome(const Request &request, const Moment &now);
    void countIn(const Request &request, const Moment &now);
    void band(const Request &request, const Moment &now);
    void noLesson(const Request &request, const Moment &now);
    void album(const Request &request, const Moment &now);
    void makeUp(const Request &request, const Moment &now);
    void surprise(const Request &request, const Moment &now);
    void compose(const Request &request, const Moment &now);
    void inCompose(const Request &request, const Moment &now);
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
        {Action::PlaySong, &ActivityRequests::playSong},
        {Action::Learn, &ActivityRequests::learn},
        {Action::ListSongs, &ActivityRequests::listSongs},
        {Action::CountSongs, &ActivityRequests::countSongs},
        {Action::Keep, &ActivityRequests::keep},
        {Action::PlayKept, &ActivityRequests::playKept},
        {Action::PlayNote, &ActivityRequests::playNote},
        {Action::PlayBars, &ActivityRequests::playBars},
        {Action::NoteNames, &ActivityRequests::noteNames},
        {Action::Transpose, &ActivityRequests::transpose},
        {Action::Hands, &ActivityRequests::nextHands},
        {Action::SetHands, &ActivityRequests::setHands},
        {Action::EarTraining, &ActivityRequests::trainEars},
        {Action::Metronome, &ActivityRequests::metronome},
        {Action::CountIn, &ActivityRequests::countIn},
        {Action::Band, &ActivityRequests::band},
        {Action::Drop, &ActivityRequests::noLesson},
        {Action::Album, &ActivityRequests::album},
        {Action::StartOver, &ActivityRequests::nothing},
        {Action::MakeUp, &ActivityRequests::makeUp},
        {Action::Surprise, &ActivityRequests::surprise},
        {Action::Compose, &ActivityRequests::compose},
        {Action::PlayAsBand, &ActivityRequests::inCompose},
        {Action::ReadBack, &ActivityRequests::inCompose},
        {Action::Variation, &ActivityRequests::variation},
        {Action::SavePiece, &ActivityRequests::inCompose},
        {Action::NewPiece, &ActivityRequests::inCompose},
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
