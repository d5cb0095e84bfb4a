#pragma once

#include "activities/activity.h"
#include "setup/settings.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace kelo::engine {

/// What is answered in words, and help.
class TalkRequests {
public:
    /// `current` is the activity that the user is in, never empty.
    TalkRequests(Session &session, Settings &settings, const std::unique_ptr<Activity> &current,
        std::filesystem::path page, std::function<bool(const std::filesystem::path &)> openPage);

    void stopListening(const Request &request, const Moment &now);
    void time(const Request &request, const Moment &now);
    void date(const Request &request, const Moment &now);
    void where(const Request &request, const Moment &now);
    void help(const Request &request, const Moment &now);
    void suggestions(const Request &request, const Moment &now);
    void page(const Request &request, const Moment &now);
    void who(const Request &request, const Moment &now);
    void agree(const Request &request, const Moment &now);
    void thanks(const Request &request, const Moment &now);
    void greet(const Request &request, const Moment &now);
    void world(const Request &request, const Moment &now);
    void naturalVoice(const Request &request, const Moment &now);
    void sayAll(const Request &request, const Moment &now);
    void sayChanges(const Request &request, const Moment &now);
    void soundsOnly(const Request &request, const Moment &now);
    void judgeLoudness(const Request &request, const Moment &now);
    void judgeLegato(const Request &request, const Moment &now);

    static constexpr Handler<TalkRequests> handlers[] = {
        {Action::StopListening, &TalkRequests::stopListening},
        {Action::Time, &TalkRequests::time},
        {Action::Date, &TalkRequests::date},
        {Action::WhereAmI, &TalkRequests::where},
        {Action::Help, &TalkRequests::help},
        {Action::WhatCanISay, &TalkRequests::suggestions},
        {Action::CommandPage, &TalkRequests::page},
        {Action::WhoAreYou, &TalkRequests::who},
        {Action::Agree, &TalkRequests::agree},
        {Action::Thanks, &TalkRequests::thanks},
        {Action::Greet, &TalkRequests::greet},
        {Action::World, &TalkRequests::world},
        {Action::NaturalVoice, &TalkRequests::naturalVoice},
        {Action::SayAll, &TalkRequests::sayAll},
        {Action::SayChanges, &TalkRequests::sayChanges},
        {Action::SoundsOnly, &TalkRequests::soundsOnly},
        {Action::JudgeLoudness, &TalkRequests::judgeLoudness},
        {Action::JudgeLegato, &TalkRequests::judgeLegato},
    };

    static constexpr std::string_view noOtherVoice =
        "I can't install another voice. V changes between those that I have.";

private:
    void talkInLessons(Talk talk, std::string_view words, const Moment &now);

    Session &session_;
    Settings &settings_;
    const std::unique_ptr<Activity> &current_;
    std::filesystem::path page_;
    std::function<bool(const std::filesystem::path &)> openPage_;
};

/// "It is Friday, the 7th of March."
[[nodiscard]] std::string dateInWords(std::chrono::year_month_day today);

} // namespace kelo::engine
