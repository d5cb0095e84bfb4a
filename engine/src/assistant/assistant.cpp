#include "assistant/assistant.h"

#include "protocol/text.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace kelo::engine {

namespace {

constexpr std::string_view help =
    "Choose a MIDI file with O, and I play it and show its notes. "
    "Return pauses it and carries on. Space plays it again from the beginning. "
    "Zero stops everything. H says this again. "
    "Lessons, the song menu and listening are not built yet.";

constexpr std::string_view notYet = "I can't do that yet.";

/// Keys that the display offers and that nothing is behind so far.
constexpr std::string_view keysToCome = "nscbtjmlgr-=[],.vpa/K";

constexpr std::uintmax_t largestMidiFile = 8 << 20;

std::string clockText(const Moment &now)
{
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d", now.hour, now.minute);
    return text;
}

std::vector<std::uint8_t> contents(const std::filesystem::path &path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)
        || std::filesystem::file_size(path, error) > largestMidiFile)
        return {};
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string_view explain(MidiFault fault)
{
    switch (fault) {
    case MidiFault::NotMidi:
        return "That isn't a MIDI file that I can read.";
    case MidiFault::Unsupported:
        return "That is a kind of MIDI file that I can't play.";
    case MidiFault::Empty:
        break;
    }
    return "There are no notes in that file.";
}

} // namespace

Assistant::Assistant(Wire &lines, Speaker &voice, Player &music)
    : wire(lines)
    , speaker(voice)
    , player(music)
{
}

void Assistant::greet(std::string_view voiceName, std::string_view trouble, const Moment &now)
{
    wire.send("name", "Kelo");
    wire.send("voice", voiceName);
    wire.send("kbd");
    wire.send("mode", "idle");
    wire.send("buttons");
    advance(now);
    std::string greeting = "Hello, I'm Kelo. Press H for help.";
    if (!trouble.empty())
        greeting.append(" ").append(trouble);
    speaker.say(greeting, now.uptime);
}

void Assistant::take(const Input &input, const Moment &now)
{
    if (const auto *command = std::get_if<Command>(&input))
        obey(command->text, now);
    else
        press(std::get<Key>(input), now);
}

void Assistant::advance(const Moment &now)
{
    if (const int minute = now.hour * 60 + now.minute; minute != shownMinute) {
        shownMinute = minute;
        wire.send("now", clockText(now));
    }
    speaker.advance(now.uptime);
    player.advance(now.uptime);
}

std::optional<double> Assistant::deadline() const
{
    const auto a = speaker.deadline();
    const auto b = player.deadline();
    return a && b ? std::min(*a, *b) : a ? a : b;
}

void Assistant::obey(std::string_view line, const Moment &now)
{
    using Handler = void (*)(Assistant &, std::string_view, const Moment &);
    struct Entry {
        std::string_view keyword;
        Handler handler;
    };
    constexpr Handler unbuilt = [](Assistant &self, std::string_view, const Moment &when) {
        self.speaker.say(notYet, when.uptime);
    };
    static constexpr Entry table[] = {
        {"bandstyle", unbuilt},
        {"bg",
            [](Assistant &self, std::string_view, const Moment &when) {
                self.speaker.say("I'll carry on in the background.", when.uptime);
            }},
        {"drop", unbuilt},
        {"hands", unbuilt},
        {"jazz", unbuilt},
        {"metronome", unbuilt},
        {"play",
            [](Assistant &self, std::string_view rest, const Moment &when) {
                self.playFile(rest, when);
            }},
        {"say",
            [](Assistant &self, std::string_view rest, const Moment &when) {
                self.answer(rest, when);
            }},
        {"speak",
            [](Assistant &self, std::string_view rest, const Moment &when) {
                self.speaker.say(rest, when.uptime);
            }},
    };
    const auto space = line.find(' ');
    const std::string_view keyword = line.substr(0, space);
    const std::string_view rest =
        space == std::string_view::npos ? std::string_view{} : line.substr(space + 1);
    for (const Entry &entry : table) {
        if (entry.keyword == keyword)
            entry.handler(*this, rest, now);
    }
    if (keyword == "ear" && rest.empty()) // with words it is what the microphone heard
        speaker.say(notYet, now.uptime);
}

void Assistant::press(Key pressed, const Moment &now)
{
    constexpr Key nothingYet[] = {Key::Left, Key::Right, Key::Delete};
    if (pressed == Key::Return)
        pauseOrCarryOn(now);
    else if (pressed == key(' '))
        playAgain(now);
    else if (pressed == key('0'))
        home(now);
    else if (pressed == key('h'))
        speaker.say(help, now.uptime);
    else if (pressed == key('q'))
        quit = true;
    else if (std::ranges::find(nothingYet, pressed) != std::end(nothingYet)
        || keysToCome.find(static_cast<char>(pressed)) != std::string_view::npos)
        speaker.say(notYet, now.uptime);
}

void Assistant::playAgain(const Moment &now)
{
    if (player.hasPiece())
        player.again(now.uptime);
    else
        speaker.say("Choose a MIDI file first, with O.", now.uptime);
}

void Assistant::pauseOrCarryOn(const Moment &now)
{
    speaker.stop();
    if (player.playing())
        player.pause(now.uptime);
    else
        player.carryOn(now.uptime);
}

void Assistant::home(const Moment &now)
{
    player.stop();
    speaker.say("Home.", now.uptime);
}

void Assistant::tellTime(const Moment &now)
{
    speaker.say("It is " + clockText(now) + ".", now.uptime);
}

void Assistant::answer(std::string_view request, const Moment &now)
{
    std::string words = oneLine(request);
    std::transform(words.begin(), words.end(), words.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto names = [&](std::string_view word) { return words.find(word) != std::string::npos; };
    if (names("help"))
        speaker.say(help, now.uptime);
    else if (names("stop"))
        home(now);
    else if (names("time"))
        tellTime(now);
    else
        speaker.say(notYet, now.uptime);
}

void Assistant::playFile(std::string_view path, const Moment &now)
{
    const std::filesystem::path file(path);
    const auto bytes = contents(file);
    auto read = readMidiFile(bytes);
    if (const auto *fault = std::get_if<MidiFault>(&read)) {
        speaker.say(explain(*fault), now.uptime);
        return;
    }
    const std::string title = oneLine(file.stem().string());
    speaker.say(title + ".", now.uptime);
    player.start(std::move(std::get<Piece>(read)), title, now.uptime);
}

} // namespace kelo::engine
