#include "assistant/assistant.h"
#include "music/midi_writer.h"
#include "protocol/text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <random>

namespace kelo::engine {

namespace {

struct Choice {
    std::string_view name;
    Action action;
};

/// What is offered at home.
constexpr std::array<Choice, 6> choices{{
    {"Song menu", Action::OpenMenu},
    {"Ear training", Action::EarTraining},
    {"Metronome", Action::Metronome},
    {"Live band", Action::Band},
    {"Talk mode", Action::TalkMode},
    {"Help", Action::Help},
}};

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

/// A file of that name in the folder which isn't there yet.
std::filesystem::path freshFile(const std::filesystem::path &folder, const std::string &name)
{
    constexpr int most = 1000;
    std::error_code error;
    auto file = folder / (name + ".mid");
    for (int i = 2; i < most && std::filesystem::exists(file, error); ++i)
        file = folder / (name + " " + std::to_string(i) + ".mid");
    return file;
}

} // namespace

bool Assistant::performSongs(const Request &request, const Moment &now)
{
    switch (request.action) {
    case Action::OpenMenu:
        openMenu(now);
        return true;
    case Action::PlaySong:
        if (choose(request, now))
            playChosen(now);
        return true;
    case Action::Learn:
        if (!choose(request, now))
            return true;
        if (request.hands)
            useHands(*request.hands);
        learnChosen(now);
        return true;
    case Action::MakeUp: {
        std::minstd_rand random(static_cast<std::uint32_t>(now.uptime * 1000) ^ randomSeed);
        const int count = static_cast<int>(tools.library.size());
        menu.choose(std::uniform_int_distribution<int>(1, count)(random));
        auto read = tools.library.load(menu.current());
        for (int i = 1; i < count && !std::holds_alternative<Piece>(read); ++i) {
            menu.next(); // that file is no music
            read = tools.library.load(menu.current());
        }
        stopTeaching(Mode::Idle);
        const std::string &name = tools.library.names()[menu.current()].title;
        play(std::move(read), name,
            "I can't make music up, so here is a piece that I know: " + name + ".", now);
        return true;
    }
    case Action::ListSongs:
        say(menu.list(), now);
        return true;
    case Action::CountSongs:
        say(menu.count(), now);
        return true;
    case Action::ListChoices: {
        std::string text = "You can open:";
        for (const Choice &each : choices)
            text.append(" ").append(each.name).append(".");
        say(text, now);
        return true;
    }
    case Action::Start:
        start(now);
        return true;
    case Action::Next:
    case Action::Previous:
        step(request.action == Action::Next, now);
        return true;
    case Action::PauseOrCarryOn:
        pauseOrCarryOn(now);
        return true;
    case Action::CarryOn:
        if (player.paused() || mode == Mode::Menu)
            pauseOrCarryOn(now);
        else if (teaching())
            demonstrate(now);
        else
            say("Nothing is paused.", now);
        return true;
    case Action::Stop:
        silence(now);
        return true;
    case Action::Home:
        home(now);
        return true;
    case Action::Keep:
        keep(now);
        return true;
    case Action::PlayKept:
        if (auto take = recorder.lastTake(now.uptime))
            play(std::move(*take), "What you played", "This is what you played.", now);
        else
            say("You haven't played anything yet.", now);
        return true;
    default:
        return false;
    }
}

void Assistant::openMenu(const Moment &now)
{
    stopTeaching(Mode::Menu);
    silence(now);
    tools.library.refresh();
    menu.setSongs(tools.library.names());
    setMode(Mode::Menu);
    say("Song menu. " + menu.describe() + " Space learns it, Return plays it.", now);
}

bool Assistant::choose(const Request &request, const Moment &now)
{
    if (request.song)
        return menu.choose(static_cast<int>(*request.song) + 1);
    if (!request.number || menu.choose(*request.number))
        return true;
    say("There is no song " + std::to_string(*request.number) + ". " + menu.count(), now);
    return false;
}

void Assistant::start(const Moment &now)
{
    if (lesson)
        teach(lesson->repeat(), now);
    else if (trainer)
        teach(trainer->repeat(), now);
    else if (mode == Mode::Menu)
        learnChosen(now);
    else if (pieceIsNews)
        player.again(now.uptime);
    else
        perform({choices[choice].action}, now);
}

void Assistant::step(bool forward, const Moment &now)
{
    if (lesson) {
        teach(forward ? lesson->skip() : lesson->back(), now);
    } else if (trainer) {
        teach(forward ? trainer->skip() : trainer->repeat(), now);
    } else if (mode == Mode::Menu) {
        forward ? menu.next() : menu.previous();
        say(menu.describe(), now);
    } else {
        pieceIsNews = false;
        choice = (choice + (forward ? 1 : choices.size() - 1)) % choices.size();
        say(std::string(choices[choice].name) + ".", now);
    }
}

void Assistant::playChosen(const Moment &now)
{
    stopTeaching(Mode::Idle);
    const std::string &name = tools.library.names()[menu.current()].title;
    play(tools.library.load(menu.current()), name, name + ".", now);
}

void Assistant::play(std::variant<Piece, MidiFault> read, const std::string &name,
    std::string_view announcement, const Moment &now)
{
    if (const auto *fault = std::get_if<MidiFault>(&read)) {
        say(explain(*fault), now);
        return;
    }
    title = name;
    pieceIsNews = true;
    say(announcement, now);
    demoWaits = false;
    player.start(std::move(std::get<Piece>(read)), title, now.uptime);
}

void Assistant::pauseOrCarryOn(const Moment &now)
{
    if (player.playing())
        player.pause(now.uptime);
    else if (player.paused())
        player.carryOn(now.uptime);
    else if (mode == Mode::Menu)
        playChosen(now);
    else if (tools.metronome.ticking())
        tools.metronome.stop();
    else if (tools.band.on())
        perform({Action::Band}, now);
}

void Assistant::silence(const Moment &now)
{
    player.stop();
    tools.metronome.stop();
    tools.band.stop();
    demoWaits = false;
    listenToPlayer(now);
}

void Assistant::home(const Moment &now)
{
    const std::string tally = trainer ? " " + trainer->tally() : "";
    stopTeaching(Mode::Idle);
    silence(now);
    pieceIsNews = false;
    choice = 0;
    setMode(Mode::Idle);
    say("Home." + tally, now);
}

void Assistant::keep(const Moment &now)
{
    const auto take = recorder.lastTake(now.uptime);
    if (!take) {
        say("You haven't played anything yet.", now);
        return;
    }
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "Played %04d-%02d-%02d %02d.%02d", now.today.year,
        now.today.month, now.today.day, now.hour, now.minute);
    std::error_code error;
    std::filesystem::create_directories(places.songs, error);
    const auto path = freshFile(places.songs, name.data());
    const auto bytes = writeMidiFile(*take);
    std::ofstream file(path, std::ios::binary);
    for (const std::uint8_t byte : bytes)
        file.put(static_cast<char>(byte));
    file.close();
    tools.library.refresh();
    menu.setSongs(tools.library.names());
    say(file ? "I kept it among your songs." : "I couldn't write it to the songs folder.", now);
}

} // namespace kelo::engine
