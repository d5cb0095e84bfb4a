#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// What is asked about scores where none is read yet, and what one wants to be accompanied in.
class ScoreRequests {
public:
    explicit ScoreRequests(Session &session)
        : session_(session)
    {
    }

    void read(const Request &request, const Moment &now);
    void readFirst(const Request &request, const Moment &now);
    void follow(const Request &request, const Moment &now);
    void key(const Request &request, const Moment &now);

    static constexpr Handler<ScoreRequests> handlers[] = {
        {Action::ReadScore, &ScoreRequests::read},
        {Action::Follow, &ScoreRequests::follow},
        {Action::ReadBars, &ScoreRequests::readFirst},
        {Action::WhatBefore, &ScoreRequests::readFirst},
        {Action::WhichKey, &ScoreRequests::key},
        {Action::SpellChord, &ScoreRequests::readFirst},
        {Action::SilentScore, &ScoreRequests::readFirst},
        {Action::ByNote, &ScoreRequests::readFirst},
        {Action::ByBeat, &ScoreRequests::readFirst},
        {Action::ByBar, &ScoreRequests::readFirst},
        {Action::ByPhrase, &ScoreRequests::readFirst},
        {Action::BrailleBar, &ScoreRequests::readFirst},
        {Action::SaveBraille, &ScoreRequests::readFirst},
    };

private:
    Session &session_;
};

} // namespace kelo::engine
