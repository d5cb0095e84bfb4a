#include "assistant/talk_requests.h"

#include "listen/command_page.h"
#include "listen/words.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <utility>

namespace kelo::engine {

std::string dateInWords(std::chrono::year_month_day today)
{
    constexpr std::array<std::string_view, 7> days{
        "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    constexpr std::array<std::string_view, 12> months{"January", "February", "March", "April",
        "May", "June", "July", "August", "September", "October", "November", "December"};
    const std::chrono::weekday weekday{std::chrono::sys_days(today)};
    const auto month = static_cast<unsigned>(today.month()) - 1;
    return "It is " + std::string(days[weekday.c_encoding()]) + ", the "
        + ordinalInWords(static_cast<int>(static_cast<unsigned>(today.day()))) + " of "
        + std::string(months[month]) + ".";
}

TalkRequests::TalkRequests(Session &session, Settings &settings,
    const std::unique_ptr<Activity> &current, std::filesystem::path page,
    std::function<bool(const std::filesystem::path &)> openPage)
    : session_(session)
    , settings_(settings)
    , current_(current)
    , page_(std::move(page))
    , openPage_(std::move(openPage))
{
    session_.talk = static_cast<Talk>(settings_->lessonTalk);
}

void TalkRequests::talkInLessons(Talk talk, std::string_view words, const Moment &now)
{
    session_.talk = talk;
    settings_.change([talk](Profile &profile) { profile.lessonTalk = static_cast<int>(talk); });
    session_.say(words, now);
}

void TalkRequests::sayAll(const Request &, const Moment &now)
{
    talkInLessons(Talk::All, "In lessons I say all that may help.", now);
}

void TalkRequests::sayChanges(const Request &, const Moment &now)
{
    talkInLessons(Talk::Changes, "In lessons I say what was wrong and what changes.", now);
}

void TalkRequests::soundsOnly(const Request &, const Moment &now)
{
    talkInLessons(
        Talk::Sounds, "In lessons sounds tell you. Ask where am I, or for the notes.", now);
}

void TalkRequests::judgeLoudness(const Request &request, const Moment &now)
{
    session_.attention.loudness = request.on.value_or(true);
    session_.say(session_.attention.loudness ? "In lessons I judge your loudness, too."
                                             : "I don't judge your loudness.",
        now);
}

void TalkRequests::judgeLegato(const Request &request, const Moment &now)
{
    session_.attention.legato = request.on.value_or(true);
    session_.say(session_.attention.legato ? "In lessons I judge how you join the notes, too."
                                           : "I don't judge how you join the notes.",
        now);
}

void TalkRequests::stopListening(const Request &, const Moment &now)
{
    session_.wire.send("ears", "off");
    session_.say("I don't listen any more. The microphone button switches me back on.", now);
}

void TalkRequests::time(const Request &, const Moment &now)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "It is %02d:%02d.", now.hour(), now.minute());
    session_.say(text.data(), now);
}

void TalkRequests::date(const Request &, const Moment &now)
{
    session_.say(dateInWords(now.today()), now);
}

void TalkRequests::where(const Request &, const Moment &now)
{
    session_.say(current_->place(), now);
}

void TalkRequests::help(const Request &, const Moment &now)
{
    session_.say(current_->help(), now);
}

void TalkRequests::suggestions(const Request &, const Moment &now)
{
    session_.say(
        "Say " + settings_->assistant + ", and then: " + std::string(current_->suggestions()) + ".",
        now);
}

void TalkRequests::page(const Request &, const Moment &now)
{
    std::ofstream file(page_, std::ios::binary);
    file << commandPage(settings_->assistant);
    file.close();
    session_.say(!file ? "I couldn't write the command page."
            : openPage_(page_)
            ? "Here are all commands."
            : "I wrote the command page, but nothing here opens it. It is in my folder, as "
              "commands.html.",
        now);
}

void TalkRequests::who(const Request &, const Moment &now)
{
    session_.say("I'm " + settings_->assistant + ", and I practise the piano with you.", now);
}

void TalkRequests::agree(const Request &, const Moment &now)
{
    session_.say("All right.", now);
}

void TalkRequests::thanks(const Request &, const Moment &now)
{
    session_.say("You're welcome.", now);
}

void TalkRequests::greet(const Request &, const Moment &now)
{
    session_.say("Hello. What would you like to do? Press H for help.", now);
}

void TalkRequests::world(const Request &, const Moment &now)
{
    session_.say("I can't look into the world for you. I know music, the time and the day.", now);
}

void TalkRequests::naturalVoice(const Request &, const Moment &now)
{
    session_.say(noOtherVoice, now);
}

} // namespace kelo::engine
