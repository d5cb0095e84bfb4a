#include "activities/pieces.h"

#include "composing/score_file.h"
#include "composing/transcription.h"
#include "files/whole_file.h"
#include "written/hand_division.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace kelo::engine {

namespace {

std::string_view explain(ReadFault fault)
{
    switch (fault) {
    case ReadFault::Unknown:
        return "That isn't a MIDI file or a MusicXML score that I can read.";
    case ReadFault::Unsupported:
        return "That is a kind of music file that I can't play.";
    case ReadFault::TooLarge:
        return "That file is too large for a piece of music.";
    case ReadFault::Empty:
        break;
    }
    return "There are no notes in that file.";
}

} // namespace

std::optional<Heard> heardFrom(Session &session, std::variant<Piece, ReadFault> read,
    const std::string &title, const Moment &now)
{
    if (const auto *fault = std::get_if<ReadFault>(&read)) {
        session.say(explain(*fault), now);
        return {};
    }
    auto &piece = std::get<Piece>(read);
    if (const auto reading = session.practice.readingOf(title))
        piece = withReading(piece, *reading);
    return Heard{title, std::move(piece)};
}

std::optional<Heard> loadSong(Session &session, std::size_t song, const Moment &now)
{
    if (song >= session.library.size()) {
        session.say("There are no songs.", now);
        return {};
    }
    return heardFrom(session, session.library.load(song), session.library.names()[song].title, now);
}

bool chooseSong(Session &session, const Request &request, const Moment &now)
{
    if (!request.song && !request.number)
        return true;
    const int number = request.song ? static_cast<int>(*request.song) + 1 : *request.number;
    if (session.songs.choose(number))
        return true;
    session.say("There is no song " + std::to_string(number) + ". " + session.songs.count(), now);
    return false;
}

std::optional<Heard> askedSong(Session &session, const Request &request, const Moment &now)
{
    if (!request.song && !request.number && session.heard)
        return session.heard;
    if (!chooseSong(session, request, now))
        return {};
    return loadSong(session, session.songs.current(), now);
}

void refreshSongs(Session &session)
{
    session.library.refresh();
    session.songs.setSongs(session.library.names());
}

bool keepFile(const Session &session, const std::string &name, std::string_view extension,
    std::string_view bytes)
{
    constexpr int most = 1000;
    std::error_code error;
    std::filesystem::create_directories(session.songsFolder, error);
    const auto named = [&](const std::string &stem) {
        return session.songsFolder / (stem + std::string(extension));
    };
    auto path = named(name);
    for (int i = 2; i < most && std::filesystem::exists(path, error); ++i)
        path = named(name + " " + std::to_string(i));
    constexpr mode_t likeOtherSongs = 0666;
    return !std::filesystem::exists(path, error) && replaceFile(path, bytes, likeOtherSongs);
}

std::optional<Score> usersTheme(Session &session, const Moment &now)
{
    if (session.composition)
        return session.composition;
    if (session.heard)
        return themeOf(session.heard->piece, session.heard->title);
    if (const auto take = session.recorder.lastTake(now.uptime))
        return themeOf(*take, "What you played");
    session.say("Play something first, or compose a piece.", now);
    return {};
}

void loadDraft(Session &session)
{
    constexpr std::uintmax_t largest = 1 << 22;
    std::error_code error;
    if (std::filesystem::file_size(session.draft, error) > largest)
        return;
    std::ifstream file(session.draft, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    session.composition = themeFromJson(text);
}

void keepDraft(Session &session)
{
    std::error_code error;
    session.draftKept = true;
    if (!session.composition)
        std::filesystem::remove(session.draft, error);
    else if (!session.draft.empty())
        session.draftKept = replaceFile(session.draft, themeToJson(*session.composition));
}

std::string stampOf(const Moment &now)
{
    const auto day = now.today();
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d.%02d",
        static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
        static_cast<unsigned>(day.day()), now.hour(), now.minute());
    return text.data();
}

} // namespace kelo::engine
