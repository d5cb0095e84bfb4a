#pragma once

#include "activities/activity.h"

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
    void notYet(const Request &request, const Moment &now);

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
        {Action::Album, &ActivityRequests::notYet},
        {Action::StartOver, &ActivityRequests::notYet},
        {Action::MakeUp, &ActivityRequests::notYet},
        {Action::Surprise, &ActivityRequests::notYet},
        {Action::Compose, &ActivityRequests::notYet},
        {Action::PlayAsBand, &ActivityRequests::notYet},
        {Action::ReadBack, &ActivityRequests::notYet},
        {Action::Variation, &ActivityRequests::notYet},
        {Action::SavePiece, &ActivityRequests::notYet},
        {Action::NewPiece, &ActivityRequests::notYet},
        {Action::ComposingIdea, &ActivityRequests::notYet},
        {Action::Lullaby, &ActivityRequests::notYet},
        {Action::VideoGame, &ActivityRequests::notYet},
        {Action::FilmScore, &ActivityRequests::notYet},
        {Action::Jam, &ActivityRequests::notYet},
        {Action::Jazz, &ActivityRequests::notYet},
        {Action::JazzIdea, &ActivityRequests::notYet},
        {Action::LogicControl, &ActivityRequests::notYet},
        {Action::ReaperControl, &ActivityRequests::notYet},
        {Action::BackALevel, &ActivityRequests::notYet},
    };

private:
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
