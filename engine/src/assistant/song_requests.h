#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// Songs and what was played: playing, learning, listing and keeping them; their notes and hands.
class SongRequests {
public:
    explicit SongRequests(Session &session)
        : session_(session)
    {
    }

    void playSong(const Request &request, const Moment &now);
    void learn(const Request &request, const Moment &now);
    void chooseHands(const Request &request, const Moment &now);
    void listSongs(const Request &request, const Moment &now);
    void countSongs(const Request &request, const Moment &now);
    void keep(const Request &request, const Moment &now);
    void playKept(const Request &request, const Moment &now);
    void playDownload(const Request &request, const Moment &now);
    void playNote(const Request &request, const Moment &now);
    void playBars(const Request &request, const Moment &now);
    void goOnLearning(const Request &request, const Moment &now);
    void noteNames(const Request &request, const Moment &now);
    void transpose(const Request &request, const Moment &now);
    void nextHands(const Request &request, const Moment &now);
    void setHands(const Request &request, const Moment &now);

    static constexpr Handler<SongRequests> handlers[] = {
        {Action::PlaySong, &SongRequests::playSong},
        {Action::Learn, &SongRequests::learn},
        {Action::ChooseHands, &SongRequests::chooseHands},
        {Action::ListSongs, &SongRequests::listSongs},
        {Action::GoOnLearning, &SongRequests::goOnLearning},
        {Action::CountSongs, &SongRequests::countSongs},
        {Action::Keep, &SongRequests::keep},
        {Action::PlayKept, &SongRequests::playKept},
        {Action::PlayDownload, &SongRequests::playDownload},
        {Action::PlayNote, &SongRequests::playNote},
        {Action::PlayBars, &SongRequests::playBars},
        {Action::NoteNames, &SongRequests::noteNames},
        {Action::Transpose, &SongRequests::transpose},
        {Action::Hands, &SongRequests::nextHands},
        {Action::SetHands, &SongRequests::setHands},
    };

private:
    template <typename Next, typename... Arguments>
    void begin(const Moment &now, Arguments &&...arguments)
    {
        session_.host.begin(
            std::make_unique<Next>(session_, std::forward<Arguments>(arguments)...), now);
    }

    Session &session_;
};

} // namespace kelo::engine
