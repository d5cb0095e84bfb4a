#include "assistant/word_input.h"

#include "listen/understanding.h"
#include "protocol/text.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace kelo::engine {

namespace {

/// What leaves the activity that one is in. It takes more than a part of the words to ask for it.
constexpr Action leaving[] = {Action::OpenMenu, Action::PlaySong, Action::Learn, Action::ReadScore,
    Action::Follow, Action::LeadPractice, Action::ForgetPiece, Action::PlayKept,
    Action::PlayDownload, Action::Album, Action::Home, Action::MakeUp, Action::Surprise,
    Action::Compose, Action::Lullaby, Action::VideoGame, Action::FilmScore, Action::Jam,
    Action::Jazz, Action::EarTraining, Action::EchoGame, Action::IntervalTraining,
    Action::ChordTraining, Action::Scale, Action::Arpeggio, Action::Cadence, Action::FingerPattern,
    Action::Drone, Action::PlayWithMe, Action::Band, Action::LogicControl, Action::ReaperControl,
    Action::Drop, Action::StartOver, Action::NewPiece, Action::Metronome};

/// Something was said besides where a song may be named, and it is no song that there is: another
/// one is not what was meant.
bool namesNoSong(const Request &request)
{
    constexpr Action ofSongs[] = {Action::PlaySong, Action::Learn, Action::ReadScore};
    const bool ofSong = std::ranges::find(ofSongs, request.action) != std::end(ofSongs);
    const bool numbered = ofSong && request.number; // of what is followed it is the tempo
    return (ofSong || request.action == Action::Follow) && !request.whole && !request.song
        && !numbered;
}

} // namespace

WordInput::WordInput(
    Session &session, const Settings &settings, const std::unique_ptr<Activity> &current)
    : session_(session)
    , settings_(settings)
    , current_(current)
    , ear_([this](std::span<const Word> words) { return understands(words, false); },
          [this](std::span<const Word> words) { return understands(words, true); })
{
}

bool WordInput::understands(std::span<const Word> words, bool allOfIt) const
{
    const auto request = understand(words, session_.library.names());
    return (request && (request->whole || !allOfIt)) || chosen(words);
}

std::optional<OpenQuestion::Answer> WordInput::chosen(std::span<const Word> words) const
{
    return question_ ? question_->chosen(words, session_.library.names()) : std::nullopt;
}

void WordInput::hear(std::string_view line, const Moment &now)
{
    const bool final = line.starts_with('1');
    if (typing_ || (!final && !line.starts_with('0')) || (line.size() > 1 && line[1] != ' '))
        return;
    const std::string_view words = line.size() > 2 ? line.substr(2) : std::string_view{};
    std::optional<Ear::Saying> saying;
    if (session_.host.speaking())
        saying = Ear::Saying{session_.host.lastSaid(), answerExpected_};
    if (const auto command = ear_.hear(final, words, saying, now.uptime))
        heard(*command, now);
}

void WordInput::heard(const std::string &command, const Moment &now)
{
    session_.wire.send("heard", oneLine(command));
    session_.wire.send("earreset");
    if (command.empty()) {
        session_.say("Yes?", now);
        answerExpected_ = true;
        return;
    }
    obey(command, now);
}

void WordInput::obey(std::string_view text, const Moment &now)
{
    std::vector<Word> words = wordsOf(text);
    // Who types or clicks may say the name all the same.
    if (words.size() > 1
        && wordsOf(settings_->assistant) == std::vector{Word{words.front().text, true}})
        words.erase(words.begin());
    if (question_ && question_->expired(now.uptime))
        question_.reset();
    const auto answer = chosen(words);
    question_.reset();
    if (answer && answer->request) {
        undertake(*answer->request, now);
        return;
    }
    if (answer) {
        session_.say("Then say it again, please.", now);
        answerExpected_ = true;
        return;
    }
    const auto request = understandKindly(words, session_.library.names());
    const bool leaves = request && std::ranges::find(leaving, request->action) != std::end(leaving);
    const bool unknownSong = request && namesNoSong(*request);
    if (request && (request->whole || !leaves || !current_->busy()) && !unknownSong)
        undertake(*request, now);
    else if (auto sounded = unknownSong
            ? std::nullopt
            : soundedRequest(words, current_->where(), session_.library.names()))
        suppose(std::move(*sounded), now);
    else if (unknownSong || std::ranges::find(words, "play", &Word::text) != words.end())
        session_.say("I don't know that song. Ask which songs there are, or press L.", now);
    else
        session_.say("I didn't understand that. Ask what you can say, or press H for help.", now);
}

/// Where two songs are meant as much as each other, asks which.
void WordInput::undertake(const Request &request, const Moment &now)
{
    if (!request.other) {
        session_.host.perform(request, now);
        return;
    }
    const auto &names = session_.library.names();
    Request other = request;
    other.song = request.other;
    other.other.reset();
    Request first = request;
    first.other.reset();
    session_.host.ask(
        names[*first.song].title + ", or " + names[*other.song].title + "?", first, other, now);
}

/// What it sounds like is done where that is certain, else asked about.
void WordInput::suppose(Sounded meant, const Moment &now)
{
    if (meant.certain) {
        undertake(meant.likeliest.request, now);
        return;
    }
    session_.say("Did you mean: " + meant.likeliest.words
            + (meant.other ? ", or: " + meant.other->words : "") + "?",
        now);
    question_.emplace(std::move(meant), now.uptime);
    answerExpected_ = true;
}

void WordInput::ask(const Request &first, const Request &second, const Moment &now)
{
    question_.emplace(first, second, now.uptime);
    answerExpected_ = true;
}

void WordInput::beginTyping(const Moment &now)
{
    typing_.emplace();
    session_.wire.send("typing", "1");
    session_.say("Type, then press Return.", now);
}

void WordInput::type(Key pressed, const Moment &now)
{
    const auto [end, echo] = typing_->press(pressed);
    if (!end) {
        if (!echo.empty())
            session_.say(echo, now);
        return;
    }
    const std::string line = std::exchange(typing_, std::nullopt)->text();
    session_.wire.send("typing", "0");
    if (*end == TypingLine::End::Leave) {
        session_.say("Typing is over.", now);
        return;
    }
    session_.wire.send("heard", oneLine(line));
    obey(line, now);
}

void WordInput::advance(const Moment &now)
{
    if (const auto command = ear_.expire(now.uptime))
        heard(*command, now);
}

void WordInput::spoken(const Moment &now)
{
    if (ear_.takeOverheard())
        session_.wire.send("earreset");
    if (std::exchange(answerExpected_, false))
        ear_.expectAnswer(now.uptime);
}

} // namespace kelo::engine
