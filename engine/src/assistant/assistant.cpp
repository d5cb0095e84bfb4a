#include "assistant/assistant.h"

#include "activities/home_activity.h"
#include "activities/jazz_activity.h"
#include "activities/loading_activity.h"
#include "activities/pieces.h"
#include "activities/playback_activity.h"
#include "assistant/keys.h"
#include "listen/understanding.h"
#include "protocol/text.h"
#include "setup/greeting.h"
#include "speech/voices.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double questionTime = 20; ///< seconds in which a question can be answered

constexpr Handler<Assistant> handlers[] = {
    {Action::PauseOrCarryOn, &Assistant::pauseOrCarryOn},
    {Action::Pause, &Assistant::pause},
    {Action::CarryOn, &Assistant::carryOn},
    {Action::Stop, &Assistant::stop},
    {Action::Home, &Assistant::goHome},
    {Action::Again, &Assistant::sayAgain},
    {Action::Start, &Assistant::toChoices},
    {Action::OpenChoice, &Assistant::toChoices},
    {Action::Next, &Assistant::toChoices},
    {Action::Previous, &Assistant::toChoices},
    {Action::NextChoice, &Assistant::toChoices},
    {Action::PreviousChoice, &Assistant::toChoices},
    {Action::ListChoices, &Assistant::toChoices},
    {Action::TalkMode, &Assistant::switchTalk},
    {Action::Type, &Assistant::type},
    {Action::TopKey, &Assistant::setTopKey},
    {Action::CommandKeysOn, &Assistant::switchCommandKeys},
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
    count(ActivityRequests::handlers);
    count(SoundRequests::handlers);
    count(DisplayRequests::handlers);
    count(TalkRequests::handlers);
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

/// What leaves the activity that one is in. It takes more than a part of the words to ask for it.
constexpr Action leaving[] = {Action::OpenMenu, Action::PlaySong, Action::Learn, Action::PlayKept,
    Action::Album, Action::Home, Action::MakeUp, Action::Surprise, Action::Compose, Action::Lullaby,
    Action::VideoGame, Action::FilmScore, Action::Jam, Action::Jazz, Action::EarTraining,
    Action::Band, Action::LogicControl, Action::ReaperControl, Action::Drop, Action::StartOver,
    Action::NewPiece, Action::Metronome};

std::optional<double> soonest(std::initializer_list<std::optional<double>> times)
{
    std::optional<double> first;
    for (const auto &time : times) {
        if (time && (!first || *time < *first))
            first = time;
    }
    return first;
}

} // namespace

Assistant::Assistant(const Equipment &equipment, const Places &places, std::uint32_t seed)
    : wire_(equipment.wire)
    , speech_(equipment.speech)
    , player_(equipment.player)
    , metronome_(equipment.metronome)
    , through_(equipment.through)
    , keys_(equipment.keys)
    , settings_(places.profile)
    , session_{.host = *this,
          .wire = equipment.wire,
          .player = equipment.player,
          .metronome = equipment.metronome,
          .band = equipment.band,
          .library = equipment.library,
          .songsFolder = places.songs,
          .draft = places.draft,
          .seed = seed,
          .logic = equipment.logic,
          .reaper = equipment.reaper,
          .recorder = Recorder(places.takes)}
    , activity_(std::make_unique<HomeActivity>(session_))
    , activityRequests_(session_, activity_)
    , soundRequests_(
          session_, settings_, equipment.speech, equipment.through, equipment.keys, equipment.desk)
    , displayRequests_(session_)
    , talkRequests_(session_, settings_, activity_, places.page, equipment.openPage)
    , ear_([this](std::span<const Word> words) { return understands(words, false); },
          [this](std::span<const Word> words) { return understands(words, true); })
    , commandKeys_(settings_->topKey)
{
    session_.songs.setSongs(equipment.library.names());
    loadDraft(session_);
}

Assistant::~Assistant() = default;

bool Assistant::understands(std::span<const Word> words, bool allOfIt) const
{
    const auto request = understand(words, session_.library.names());
    return (request && (request->whole || !allOfIt)) || chosen(words);
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
    showPiano(piano);
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
    }
    say(greeting.append(trouble), now);
}

void Assistant::tellNames()
{
    wire_.send("name",
        settings_->user.empty() ? settings_->assistant
                                : settings_->assistant + "|" + settings_->user);
    ear_.setName(settings_->assistant);
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
        hear(rest, now);
    } else if (const auto action = actionFor(keyword)) {
        perform({*action}, now);
    } else if (keyword == "say") {
        answer(rest, now);
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
    if (typing_)
        typeKey(pressed, now);
    else if (pressed == key('q'))
        quit_ = true;
    else if (const auto action = actionFor(pressed, shownMode_))
        perform({*action}, now);
}

void Assistant::typeKey(Key pressed, const Moment &now)
{
    const auto [end, echo] = typing_->press(pressed);
    if (!end) {
        if (!echo.empty())
            say(echo, now);
        return;
    }
    const std::string line = std::exchange(typing_, std::nullopt)->text();
    wire_.send("typing", "0");
    if (*end == TypingLine::End::Leave) {
        say("Typing is over.", now);
        return;
    }
    wire_.send("heard", oneLine(line));
    answer(line, now);
}

void Assistant::hear(std::string_view rest, const Moment &now)
{
    const bool final = rest.starts_with('1');
    if (typing_ || (!final && !rest.starts_with('0')) || (rest.size() > 1 && rest[1] != ' '))
        return;
    const std::string_view words = rest.size() > 2 ? rest.substr(2) : std::string_view{};
    if (const auto command = ear_.hear(final, words, speech_.speaking(), now.uptime))
        heard(*command, now);
}

void Assistant::heard(const std::string &command, const Moment &now)
{
    wire_.send("heard", oneLine(command));
    wire_.send("earreset");
    if (command.empty()) {
        say("Yes?", now);
        answerExpected_ = true;
        return;
    }
    answer(command, now);
}

void Assistant::answer(std::string_view text, const Moment &now)
{
    std::vector<Word> words = wordsOf(text);
    // Who types or clicks may say the name all the same.
    if (words.size() > 1
        && wordsOf(settings_->assistant) == std::vector{Word{words.front().text, true}})
        words.erase(words.begin());
    if (question_ && now.uptime > question_->until)
        question_.reset();
    const auto choice = chosen(words);
    question_.reset();
    if (choice) {
        perform(*choice, now);
        return;
    }
    const auto request = understandKindly(words, session_.library.names());
    const bool leaves = request && std::ranges::find(leaving, request->action) != std::end(leaving);
    if (request && (request->whole || !leaves || !activity_->busy()))
        undertake(*request, now);
    else if (std::ranges::find(words, "play", &Word::text) != words.end())
        say("I don't know that song. Ask which songs there are, or press L.", now);
    else
        say("I didn't understand that. Ask what you can say, or press H for help.", now);
}

/// Where two songs are meant as much as each other, asks which.
void Assistant::undertake(const Request &request, const Moment &now)
{
    if (!request.song || !request.other) {
        perform(request, now);
        return;
    }
    const auto &names = session_.library.names();
    Request other = request;
    other.song = request.other;
    other.other.reset();
    Request first = request;
    first.other.reset();
    ask(names[*first.song].title + ", or " + names[*other.song].title + "?", first, other, now);
}

void Assistant::ask(
    std::string_view text, const Request &first, const Request &second, const Moment &now)
{
    say(text, now);
    question_ = Question{first, second, now.uptime + questionTime};
    answerExpected_ = true;
}

/// What the words choose of the two that were asked for; nothing where they choose none.
std::optional<Request> Assistant::chosen(std::span<const Word> words) const
{
    if (!question_ || words.empty())
        return {};
    const auto said = [&](std::initializer_list<std::string_view> answers) {
        return std::ranges::any_of(words, [&](const Word &word) {
            return std::ranges::find(answers, word.text) != answers.end();
        });
    };
    if (said({"first", "former", "one"}))
        return question_->first;
    if (said({"second", "latter", "two", "other"}))
        return question_->second;
    if (!question_->first.song || !question_->second.song)
        return {};
    // Only one of the two songs may have been named, by what makes it different.
    const auto &names = session_.library.names();
    const std::array both{names[*question_->first.song], names[*question_->second.song]};
    const auto request = understand(words, both);
    if (!request || !request->song || request->other)
        return {};
    return *request->song == 0 ? question_->first : question_->second;
}

void Assistant::perform(const Request &request, const Moment &now)
{
    hush();
    settingTopKey_ = false;
    session_.done[request.action] = now.uptime;
    if (activity_->request(request, now) || handle(*this, handlers, request, now))
        return;
    static_cast<void>(handle(activityRequests_, ActivityRequests::handlers, request, now)
        || handle(soundRequests_, SoundRequests::handlers, request, now)
        || handle(displayRequests_, DisplayRequests::handlers, request, now)
        || handle(talkRequests_, TalkRequests::handlers, request, now));
}

void Assistant::begin(std::unique_ptr<Activity> next, const Moment &now)
{
    activity_->leave(now);
    left_.push_back(std::exchange(activity_, std::move(next)));
    showMode();
    activity_->enter(now);
}

void Assistant::pauseOrCarryOn(const Request &, const Moment &now)
{
    if (activity_->paused())
        activity_->resume(now);
    else
        activity_->pause(now);
}

void Assistant::pause(const Request &, const Moment &now)
{
    if (activity_->paused() || !activity_->pause(now))
        say("Nothing plays.", now);
}

void Assistant::carryOn(const Request &, const Moment &now)
{
    if (activity_->paused())
        activity_->resume(now);
    else
        say("Nothing is paused.", now);
}

void Assistant::stop(const Request &, const Moment &now)
{
    if (activity_->busy())
        begin(std::make_unique<HomeActivity>(session_), now);
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

void Assistant::toChoices(const Request &request, const Moment &now)
{
    begin(std::make_unique<HomeActivity>(session_), now);
    static_cast<void>(activity_->request(request, now));
}

void Assistant::switchTalk(const Request &request, const Moment &now)
{
    talking_ = request.on.value_or(!talking_);
    showMode();
    say(talking_ ? "Talk mode. I listen without my name." : "Talk mode is off.", now);
}

void Assistant::type(const Request &, const Moment &now)
{
    typing_.emplace();
    wire_.send("typing", "1");
    say("Type, then press Return.", now);
}

void Assistant::setTopKey(const Request &, const Moment &now)
{
    settingTopKey_ = !pianoName_.empty();
    say(settingTopKey_ ? "Press the highest key of your piano." : "I don't see a piano.", now);
}

void Assistant::switchCommandKeys(const Request &request, const Moment &now)
{
    commandKeysOn_ = request.on.value_or(!commandKeysOn_);
    tellButtons();
    say(commandKeysOn_ ? "The highest keys give commands." : "All keys are music.", now);
}

bool Assistant::takeCommandKey(int pitch, int velocity, const Moment &now)
{
    if (settingTopKey_ && velocity > 0) {
        settingTopKey_ = false;
        commandKeys_.setTop(pitch);
        settings_.change(
            [this](Profile &profile) { profile.topKey = commandKeys_.pitches().front(); });
        tellButtons();
        say("This is the top key now.", now);
        return true;
    }
    setCommandKeysRule();
    const auto [music, command] =
        velocity > 0 ? commandKeys_.press(pitch, now.uptime) : commandKeys_.release(pitch);
    if (command)
        perform({commandKeyActions(shownMode_)[static_cast<std::size_t>(*command)]}, now);
    return !music;
}

void Assistant::setCommandKeysRule()
{
    commandKeys_.setRule(!commandKeysOn_   ? CommandKeys::Rule::Off
            : activity_->everyKeyIsMusic() ? CommandKeys::Rule::AfterHold
                                           : CommandKeys::Rule::AtOnce);
}

void Assistant::takePiano(ChannelMessage message, const Moment &now)
{
    left_.clear();
    const int pitch = message.first & 0x7f;
    const bool release = message.kind() == 0x80 || (message.kind() == 0x90 && message.second == 0);
    const bool note = release || message.kind() == 0x90;
    const int velocity = release ? 0 : message.second;
    const bool shown = down_[static_cast<std::size_t>(pitch)];
    if (note && (takeCommandKey(pitch, velocity, now) || (release && !shown)))
        return;
    if (settings_->keysSound)
        keys_.play(0, {static_cast<unsigned char>(message.kind()), message.first, message.second});
    session_.recorder.play(message, now.uptime);
    if (!note)
        return;
    wire_.send("on", {pitch, velocity});
    down_[static_cast<std::size_t>(pitch)] = velocity > 0;
    activity_->note(pitch, velocity, now);
}

/// What is being played waits for a piano that has gone.
void Assistant::pianoChanged(std::string_view name, const Moment &now)
{
    const std::string before = pianoName_;
    showPiano(name);
    if (pianoName_.empty()) {
        if (!activity_->paused())
            activity_->pause(now);
        say(before + " is gone.", now);
    } else {
        say(pianoName_ + " is here.", now);
    }
}

void Assistant::showPiano(std::string_view name)
{
    pianoName_ = oneLine(name);
    session_.pianoPresent = !pianoName_.empty();
    wire_.send("kbd", pianoName_);
    tellButtons();
    keys_.silence();
    for (int pitch = 0; pitch < 128; ++pitch) {
        if (down_[static_cast<std::size_t>(pitch)])
            wire_.send("on", {pitch, 0});
    }
    down_.reset();
}

void Assistant::advance(const Moment &now)
{
    left_.clear();
    if (const int minute = now.minuteOfDay(); minute != shownMinute_) {
        shownMinute_ = minute;
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "%02d:%02d", now.hour(), now.minute());
        wire_.send("now", text.data());
    }
    const bool spoke = speech_.speaking();
    speech_.advance(now.uptime);
    player_.advance(now.uptime);
    metronome_.advance(now.uptime);
    through_.advance(now.uptime);
    if (const auto command = ear_.expire(now.uptime))
        heard(*command, now);
    if (spoke && !speech_.speaking()) {
        if (ear_.takeOverheard())
            wire_.send("earreset");
        if (std::exchange(answerExpected_, false))
            ear_.expectAnswer(now.uptime);
    }
    soundRequests_.advance(now);
    session_.recorder.advance(now.uptime);
    setCommandKeysRule();
    if (commandKeys_.advance(now.uptime)) {
        activity_->takeBack(commandKeys_.pitches().back(), now);
        constexpr ChannelMessage softTick{0x99, 76, 45};
        keys_.play(0, softTick);
    }
    activity_->advance(now);
}

std::optional<double> Assistant::deadline() const
{
    return soonest({speech_.deadline(), player_.deadline(), metronome_.deadline(),
        through_.deadline(), ear_.deadline(), activity_->deadline(), session_.recorder.deadline(),
        commandKeys_.deadline()});
}

void Assistant::say(std::string_view text, const Moment &now)
{
    lastSaid_ = oneLine(text);
    answerExpected_ = false;
    speech_.say(lastSaid_, now.uptime);
}

void Assistant::hush()
{
    speech_.stop();
    answerExpected_ = false;
}

void Assistant::showMode()
{
    ear_.setOpen(talking_);
    const std::string_view activity = activity_->mode();
    const std::string_view mode = talking_ && activity == "idle" ? "talk" : activity;
    if (shownMode_ == mode)
        return;
    shownMode_ = mode;
    wire_.send("mode", mode);
    tellVocabulary();
}

void Assistant::tellVocabulary()
{
    const unsigned where = activity_->where() | (talking_ ? InTalk : 0U);
    std::string phrases;
    for (const std::string &phrase : vocabulary(where, session_.library.names()))
        phrases += (phrases.empty() ? "" : "|") + phrase;
    wire_.send("vocab", phrases);
}

void Assistant::tellButtons()
{
    std::string keys;
    if (!pianoName_.empty() && commandKeysOn_) {
        for (const int pitch : commandKeys_.pitches())
            keys += (keys.empty() ? "" : " ") + std::to_string(pitch);
    }
    wire_.send("buttons", keys);
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
    say(words, now);
}

} // namespace kelo::engine
