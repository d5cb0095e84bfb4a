#include "assistant/assistant.h"

#include "assistant/keys.h"
#include "assistant/words.h"
#include "protocol/text.h"
#include "setup/greeting.h"
#include "speech/voices.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace kelo::engine {

namespace {

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

Assistant::Assistant(const Equipment &equipment, Places whereThingsAre, std::uint32_t seed)
    : tools(equipment)
    , places(std::move(whereThingsAre))
    , wire(equipment.wire)
    , speaker(equipment.speaker)
    , player(equipment.player)
    , randomSeed(seed)
    , profile(loadProfile(places.profile))
    , settings(profile.value_or(Profile{}))
    , ear([this](std::span<const Word> words) {
        return understand(words, tools.library.names()).has_value();
    })
    , commandKeys(settings.topKey)
{
    menu.setSongs(tools.library.names());
    settings.voice %= static_cast<int>(voices.size());
    speaker.setVoice(static_cast<std::size_t>(settings.voice));
    tools.setVoiceLoudness(static_cast<float>(settings.voiceLoudness) / 100);
}

void Assistant::begin(std::string_view piano, bool asksQuestions, const Moment &now)
{
    if (!profile && asksQuestions)
        wire.send("welcome");
    sendNames();
    wire.send("voice", voices[static_cast<std::size_t>(settings.voice)].name);
    wire.send("hands", nameOf(hands));
    wire.send("bandstyle", tools.band.style() == Band::Style::Simple ? "simple" : "full");
    setMode(Mode::Idle);
    pianoChanged(piano);
    advance(now);
}

void Assistant::greet(std::string_view trouble, const Moment &now)
{
    std::string greeting;
    if (profile) {
        greeting = greetingFor(settings, now.today, now.hour) + " Press H for help. ";
        if (isBirthday(settings, now.today) && settings.wishedIn != now.today.year) {
            settings.wishedIn = now.today.year;
            rememberProfile();
        }
    }
    say(greeting.append(trouble), now);
}

void Assistant::sendNames()
{
    wire.send("name",
        settings.user.empty() ? settings.assistant : settings.assistant + "|" + settings.user);
    ear.setName(settings.assistant);
}

void Assistant::take(const Input &input, const Moment &now)
{
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
    if (keyword == "ear" && space != std::string_view::npos)
        hear(rest, now);
    else if (const auto action = actionFor(keyword))
        perform({*action}, now);
    else if (keyword == "say")
        answer(rest, now);
    else if (keyword == "speak")
        say(rest, now);
    else if (keyword == "play") {
        hush();
        stopTeaching(Mode::Idle);
        const std::filesystem::path file(rest);
        const std::string name = oneLine(file.stem().string());
        play(loadMidiFile(file), name, name + ".", now);
    } else if (keyword == "setup")
        setUp(rest, now);
    else if (keyword == "bg")
        say("I'll carry on in the background.", now);
    else if (keyword == "login")
        say(rest == "on"        ? "I'll start when you log in."
                : rest == "off" ? "I won't start by myself."
                                : "That could not be changed.",
            now);
}

void Assistant::press(Key pressed, const Moment &now)
{
    if (typing)
        type(pressed, now);
    else if (pressed == key('q'))
        quit = true;
    else if (const auto action = actionFor(pressed, mode))
        perform({*action}, now);
}

void Assistant::type(Key pressed, const Moment &now)
{
    const auto [end, echo] = typing->press(pressed);
    if (!end) {
        if (!echo.empty())
            say(echo, now);
        return;
    }
    const std::string line = std::exchange(typing, std::nullopt)->text();
    wire.send("typing", "0");
    if (*end == TypingLine::End::Leave) {
        say("Typing is over.", now);
        return;
    }
    wire.send("heard", oneLine(line));
    answer(line, now);
}

void Assistant::hear(std::string_view rest, const Moment &now)
{
    const bool final = rest.starts_with('1');
    if (typing || (!final && !rest.starts_with('0')) || (rest.size() > 1 && rest[1] != ' '))
        return;
    const std::string_view words = rest.size() > 2 ? rest.substr(2) : std::string_view{};
    if (const auto command = ear.hear(final, words, speaker.speaking(), now.uptime))
        heard(*command, now);
}

void Assistant::heard(const std::string &command, const Moment &now)
{
    wire.send("heard", oneLine(command));
    wire.send("earreset");
    if (command.empty()) {
        say("Yes?", now);
        answerExpected = true;
        return;
    }
    answer(command, now);
}

void Assistant::answer(std::string_view text, const Moment &now)
{
    std::vector<Word> words = wordsOf(text);
    // Who types or clicks may say the name all the same.
    if (words.size() > 1
        && wordsOf(settings.assistant) == std::vector{Word{words.front().text, true}})
        words.erase(words.begin());
    if (const auto request = understandKindly(words, tools.library.names()))
        perform(*request, now);
    else if (std::ranges::find(words, "play", &Word::text) != words.end())
        say("I don't know that song. Ask which songs there are, or press L.", now);
    else
        say("I didn't understand that. Ask what you can say, or press H for help.", now);
}

void Assistant::perform(const Request &request, const Moment &now)
{
    hush();
    settingTopKey = false;
    if (const auto refusal = refusalOf(request.action); !refusal.empty()) {
        say(refusal, now);
        return;
    }
    static_cast<void>(performSongs(request, now) || performTeaching(request, now)
        || performSound(request, now) || performDisplay(request, now) || performTalk(request, now));
}

void Assistant::takePiano(ChannelMessage message, const Moment &now)
{
    const int pitch = message.first & 0x7f;
    const bool release = message.kind() == 0x80 || (message.kind() == 0x90 && message.second == 0);
    const bool note = release || message.kind() == 0x90;
    const int velocity = release ? 0 : message.second;
    if (note && !down[static_cast<std::size_t>(pitch)]) {
        if (settingTopKey && velocity > 0) {
            settingTopKey = false;
            commandKeys.setTop(pitch);
            settings.topKey = commandKeys.pitches().front();
            rememberProfile();
            tellButtons();
            say("This is the top key now.", now);
            return;
        }
        if (const auto place = commandKeys.place(pitch)) {
            if (velocity > 0)
                perform({commandKeyActions(mode)[static_cast<std::size_t>(*place)]}, now);
            return;
        }
        if (release)
            return;
    }
    if (settings.keysSound)
        tools.keys.play(
            0, {static_cast<unsigned char>(message.kind()), message.first, message.second});
    if (!note)
        return;
    wire.send("on", {pitch, velocity});
    down[static_cast<std::size_t>(pitch)] = velocity > 0;
    recorder.key(pitch, velocity, now.uptime);
    tools.band.key(pitch, velocity, now.uptime);
    if (velocity > 0 && lesson)
        teach(lesson->press(pitch, now.uptime), now);
    else if (velocity > 0 && trainer)
        teach(trainer->press(pitch), now);
}

void Assistant::pianoChanged(std::string_view name)
{
    pianoName = oneLine(name);
    wire.send("kbd", pianoName);
    tellButtons();
    tools.keys.silence();
    for (int pitch = 0; pitch < 128; ++pitch) {
        if (down[static_cast<std::size_t>(pitch)])
            wire.send("on", {pitch, 0});
    }
    down.reset();
}

void Assistant::advance(const Moment &now)
{
    if (const int minute = now.hour * 60 + now.minute; minute != shownMinute) {
        shownMinute = minute;
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "%02d:%02d", now.hour, now.minute);
        wire.send("now", text.data());
    }
    const bool spoke = speaker.speaking();
    speaker.advance(now.uptime);
    player.advance(now.uptime);
    tools.metronome.advance(now.uptime);
    tools.band.advance(now.uptime);
    tools.through.advance(now.uptime);
    if (const auto command = ear.expire(now.uptime))
        heard(*command, now);
    if (spoke && !speaker.speaking()) {
        if (ear.takeOverheard())
            wire.send("earreset");
        if (std::exchange(answerExpected, false))
            ear.expectAnswer(now.uptime);
    }
    if (lesson)
        teach(lesson->advance(now.uptime), now);
    listenToPlayer(now);
}

std::optional<double> Assistant::deadline() const
{
    return soonest(
        {speaker.deadline(), player.deadline(), tools.metronome.deadline(), tools.band.deadline(),
            tools.through.deadline(), ear.deadline(), lesson ? lesson->deadline() : std::nullopt});
}

} // namespace kelo::engine
