#include "activities/jam_activity.h"

#include "composing/jam.h"
#include "composing/transcription.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr double phraseOver = 1.4; ///< seconds without a key, held ones aside
constexpr std::size_t fewestNotes = 3;
constexpr std::size_t longestPhrase = 2000; ///< notes
constexpr int jamTempoStep = 8;

} // namespace

void JamActivity::enter(const Moment &now)
{
    say(session_.pianoPresent ? "Jam. Play four bars or eight, then listen."
                              : "Jam. I don't see a piano yet. Play four bars or eight.",
        now);
}

bool JamActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<JamActivity> handlers[] = {
        {Action::Start, &JamActivity::again},
        {Action::Again, &JamActivity::again},
        {Action::JamAgain, &JamActivity::again},
        {Action::Slower, &JamActivity::slower},
        {Action::Faster, &JamActivity::faster},
    };
    return handle(*this, handlers, request, now);
}

void JamActivity::note(int pitch, int velocity, const Moment &now)
{
    if (session_.player.playing() && velocity > 0)
        session_.player.stop(); // whoever plays has the word
    lastKey_ = now.uptime;
    if (velocity > 0) {
        ++held_;
        if (phrase_.size() < longestPhrase)
            phrase_.emplace_back(now.uptime, 0, pitch, velocity, 0, 0);
        return;
    }
    held_ = std::max(held_ - 1, 0);
    const auto held = std::find_if(phrase_.rbegin(), phrase_.rend(),
        [pitch](const Note &note) { return note.pitch == pitch && note.duration <= 0; });
    if (held != phrase_.rend())
        held->endAt(now.uptime);
}

void JamActivity::takeBack(int pitch, const Moment &)
{
    const auto last = std::ranges::find(phrase_.rbegin(), phrase_.rend(), pitch, &Note::pitch);
    if (last != phrase_.rend())
        phrase_.erase(std::next(last).base());
}

std::optional<double> JamActivity::deadline() const
{
    if (phrase_.size() < fewestNotes || held_ > 0 || paused())
        return {};
    return lastKey_ + phraseOver;
}

void JamActivity::advance(const Moment &now)
{
    if (const auto due = deadline(); due && now.uptime >= *due)
        answer(now);
}

void JamActivity::answer(const Moment &now)
{
    const Score phrase = transcribe(phrase_);
    phrase_.clear();
    last_ = answerTo(phrase, barsToTrade(phrase), session_.seedAt(now));
    last_->tempo = std::clamp(last_->tempo + faster_, 40, 240);
    session_.player.demonstrate(pieceOf(*last_), now.uptime);
}

void JamActivity::again(const Request &, const Moment &now)
{
    if (last_)
        session_.player.demonstrate(pieceOf(*last_), now.uptime);
    else
        say("Play something first.", now);
}

void JamActivity::slower(const Request &, const Moment &now)
{
    changeTempo(-jamTempoStep, now);
}

void JamActivity::faster(const Request &, const Moment &now)
{
    changeTempo(jamTempoStep, now);
}

void JamActivity::changeTempo(int by, const Moment &now)
{
    faster_ = std::clamp(faster_ + by, -80, 80);
    say(by > 0 ? "Faster answers." : "Slower answers.", now);
}

std::string_view JamActivity::help() const
{
    return "Play four bars or eight and stop: I answer with as many in your key and tempo. Space "
           "plays my answer again. Zero goes home.";
}

std::string_view JamActivity::suggestions() const
{
    return "repeat; slower; or stop";
}

} // namespace kelo::engine
