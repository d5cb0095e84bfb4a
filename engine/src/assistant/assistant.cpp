#include "assistant/assistant.h"

#include "activities/home_activity.h"
#include "activities/jazz_activity.h"
#include "activities/loading_activity.h"
#include "activities/pieces.h"
#include "activities/playback_activity.h"
#include "assistant/keys.h"
#include "protocol/text.h"
#include "setup/greeting.h"
#include "speech/voices.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace kelo::engine {

namespace {

constexpr Handler<Assistant> handlers[] = {
    {Action::Home, &Assistant::goHome},
    {Action::Again, &Assistant::sayAgain},
    {Action::TalkMode, &Assistant::switchTalk},
    {Action::Type, &Assistant::type},
};

/// Counts the handlers that each action has, whatever the activity.
consteval std::array<int, actionCount> handlersOfActions()
{
    std::array<int, actionCount> counts{};
    const auto count = [&](const auto &table) {
        for (const auto &handler : table)
            ++counts[static_cast<std::size_t>(handler.action)];
    };
    count(handlers);
    count(TransportRequests::handlers);
    count(ActivityRequests::handlers);
    count(SongRequests::handlers);
    count(ScoreRequests::handlers);
    count(PracticeRequests::handlers);
    count(SoundRequests::handlers);
    count(DisplayRequests::handlers);
    count(TalkRequests::handlers);
    count(PianoInput::handlers);
    return counts;
}

static_assert(
    [] {
        for (const int count : handlersOfActions()) {
            if (count != 1)
                return false;
        }
        return true;
    }(),
    "every action has one handler");

} // namespace

Assistant::Assistant(const Equipment &equipment, const Places &places, std::uint32_t seed)
    : wire_(equipment.wire)
    , speech_(equipment.speech)
    , player_(equipment.player)
    , metronome_(equipment.metronome)
    , through_(equipment.through)
    , settings_(places.profile)
    , session_{.host = *this,
          .wire = equipment.wire,
          .player = equipment.player,
          .metronome = equipment.metronome,
          .band = equipment.band,
          .library = equipment.library,
          .songsFolder = places.songs,
          .downloads = places.downloads,
          .draft = places.draft,
          .seed = seed,
          .logic = equipment.logic,
          .reaper = equipment.reaper,
          .recorder = Recorder(places.takes),
          .progress = Progress(places.progress),
          .practice = PracticeLog(places.practice)}
    , activity_(std::make_unique<HomeActivity>(session_))
    , transportRequests_(session_, activity_)
    , activityRequests_(session_, activity_)
    , songRequests_(session_)
    , scoreRequests_(session_)
    , practiceRequests_(session_)
    , soundRequests_(
          session_, settings_, equipment.speech, equipment.through, equipment.keys, equipment.desk)
    , displayRequests_(session_)
    , talkRequests_(session_, settings_, activity_, places.page, equipment.openPage)
    , words_(session_, settings_, activity_)
    , piano_(session_, settings_, equipment.keys, activity_)
    , modeDisplay_(session_)
{
    session_.songs.setSongs(equipment.library.names());
    loadDraft(session_);
}

Assistant::~Assistant()
{
    keepAll();
}

void Assistant::begin(std::string_view piano, bool asksQuestions, const Moment &now)
{
    if (!settings_.known() && asksQuestions)
        wire_.send("welcome");
    tellNames();
    soundRequests_.begin();
    wire_.send("hands", nameOf(session_.hands));
    JazzActivity::tellLessons(session_);
    showMode();
    piano_.show(piano);
    advance(now);
}

void Assistant::greet(std::string_view trouble, const Moment &now)
{
    std::string greeting;
    if (settings_.known()) {
        greeting = greetingFor(*settings_, now.today(), now.hour()) + " Press H for help. ";
        const int year = static_cast<int>(now.today().year());
        if (isBirthday(*settings_, now.today()) && settings_->wishedIn != year)
            settings_.change([year](Profile &profile) { profile.wishedIn = year; });
    } else {
        troubleLeft_ = trouble; // the first question is about to interrupt
    }
    toldOfFolder_ = trouble.find(takesNothing) != std::string_view::npos;
    say(greeting.append(session_.practice.takeTrouble()).append(trouble), now);
    greeted_ = true;
}

void Assistant::tellNames()
{
    wire_.send("name",
        settings_->user.empty() ? settings_->assistant
                                : settings_->assistant + "|" + settings_->user);
    words_.nameChanged();
}

void Assistant::take(const Input &input, const Moment &now)
{
    left_.clear();
    if (const auto *command = std::get_if<Command>(&input))
        obey(command->text, now);
    else
        press(std::get<Key>(input), now);
}

void Assistant::obey(std::string_view line, const Moment &now)
{
    const auto space = line.find(' ');
    const std::string_view keyword = line.substr(0, space);
    const std::string_view rest =
        space == std::string_view::npos ? std::string_view{} : line.substr(space + 1);
    if (keyword == "ear" && space != std::string_view::npos) {
        words_.hear(rest, now);
    } else if (const auto action = actionFor(keyword)) {
        perform({*action}, now);
    } else if (keyword == "say") {
        words_.obey(rest, now);
    } else if (keyword == "speak") {
        say(rest, now);
    } else if (keyword == "play") {
        hush();
        playFile(session_, rest, now);
    } else if (keyword == "jazz") {
        const auto words = wordsOf(rest);
        const auto number = numberAt(words);
        perform({.action = Action::Jazz,
                    .number = number ? std::optional(number->value) : std::nullopt},
            now);
    } else if (keyword == "setup") {
        setUp(rest, now);
    } else if (keyword == "bg") {
        say("I'll carry on in the background.", now);
    } else if (keyword == "login") {
        say(rest == "on"        ? "I'll start when you log in."
                : rest == "off" ? "I won't start by myself."
                                : "That could not be changed.",
            now);
    }
}

void Assistant::press(Key pressed, const Moment &now)
{
    if (words_.typing())
        words_.type(pressed, now);
    else if (pressed == key('q'))
        quit_ = true;
    else if (const auto action = actionFor(pressed, modeDisplay_.mode()))
        perform({*action}, now);
}

void Assistant::ask(
    std::string_view text, const Request &first, const Request &second, const Moment &now)
{
    say(text, now);
    words_.ask(first, second, now);
}

void Assistant::perform(const Request &request, const Moment &now)
{
    hush();
    piano_.forgetTopKey();
    session_.done[request.action] = now.uptime;
    if (activity_->request(request, now) || handle(*this, handlers, request, now))
        return;
    static_cast<void>(handle(transportRequests_, TransportRequests::handlers, request, now)
        || handle(activityRequests_, ActivityRequests::handlers, request, now)
        || handle(songRequests_, SongRequests::handlers, request, now)
        || handle(scoreRequests_, ScoreRequests::handlers, request, now)
        || handle(practiceRequests_, PracticeRequests::handlers, request, now)
        || handle(soundRequests_, SoundRequests::handlers, request, now)
        || handle(displayRequests_, DisplayRequests::handlers, request, now)
        || handle(piano_, PianoInput::handlers, request, now)
        || handle(talkRequests_, TalkRequests::handlers, request, now));
}

void Assistant::begin(std::unique_ptr<Activity> next, const Moment &now)
{
    activity_->leave(now);
    left_.push_back(std::exchange(activity_, std::move(next)));
    showMode();
    activity_->enter(now);
}

void Assistant::goHome(const Request &, const Moment &now)
{
    talking_ = false;
    begin(std::make_unique<HomeActivity>(session_), now);
    say("Home.", now);
}

void Assistant::sayAgain(const Request &, const Moment &now)
{
    say(lastSaid_.empty() ? "I haven't said anything yet." : lastSaid_, now);
}

void Assistant::switchTalk(const Request &request, const Moment &now)
{
    talking_ = request.on.value_or(!talking_);
    showMode();
    say(talking_ ? "Talk mode. I listen without my name." : "Talk mode is off.", now);
}

void Assistant::takePiano(ChannelMessage message, const Moment &now)
{
    left_.clear();
    piano_.take(message, modeDisplay_.mode(), now);
}

void Assistant::advance(const Moment &now)
{
    left_.clear();
    modeDisplay_.showTime(now);
    const bool spoke = speech_.speaking();
    speech_.advance(now.uptime);
    player_.advance(now.uptime);
    metronome_.advance(now.uptime);
    through_.advance(now.uptime);
    words_.advance(now);
    if (spoke && !speech_.speaking())
        words_.spoken(now);
    soundRequests_.advance(now);
    session_.recorder.advance(now.uptime);
    piano_.advance(now);
    activity_->advance(now);
    if (greeted_ && quiet()) {
        if (const std::string trouble = session_.practice.takeTrouble(); !trouble.empty())
            say(trouble, now);
    }
    if (now.uptime >= nextKeeping_ && greeted_ && settings_.known() && quiet())
        keep(now);
}

/// Writes what could not be written before; false where it still cannot.
bool Assistant::keepAll()
{
    if (!session_.draftKept)
        keepDraft(session_);
    const std::array kept{session_.draftKept, settings_.keep(), session_.progress.keep(),
        session_.practice.keep(), session_.recorder.keep()};
    return std::ranges::all_of(kept, std::identity());
}

/// Says when the folder begins to take nothing, and when it takes what it did not.
void Assistant::keep(const Moment &now)
{
    constexpr double every = 5; // seconds
    nextKeeping_ = now.uptime + every;
    const bool before = std::exchange(kept_, keepAll());
    if (kept_ && !before)
        say("I can write to my folder again, and have kept what you did meanwhile.", now);
    else if (!kept_ && !toldOfFolder_)
        say(takesNothing, now);
    toldOfFolder_ = kept_ ? toldOfFolder_ && before : true;
}

std::optional<double> Assistant::deadline() const
{
    return earliest({speech_.deadline(), player_.deadline(), metronome_.deadline(),
        through_.deadline(), words_.deadline(), activity_->deadline(), session_.recorder.deadline(),
        piano_.deadline()});
}

void Assistant::say(std::string_view text, const Moment &now)
{
    lastSaid_ = oneLine(text);
    words_.expectNothing();
    speech_.say(lastSaid_, now.uptime);
}

void Assistant::hush()
{
    speech_.stop();
    words_.expectNothing();
}

void Assistant::showMode()
{
    words_.setOpen(talking_);
    modeDisplay_.show(*activity_, talking_);
}

void Assistant::setUp(std::string_view fields, const Moment &now)
{
    settings_.answer(fields);
    tellNames();
    std::string words = settings_->user.empty() ? "Welcome." : "Welcome, " + settings_->user + ".";
    words += " Say " + settings_->assistant + ", and then: " + std::string(activity_->suggestions())
        + ".";
    if (settings_->naturalVoice)
        words += " " + std::string(TalkRequests::noOtherVoice);
    if (!troubleLeft_.empty())
        words += " " + std::exchange(troubleLeft_, {});
    say(words, now);
}

} // namespace kelo::engine
