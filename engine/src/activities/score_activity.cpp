#include "activities/score_activity.h"

#include "activities/pieces.h"
#include "braille/braille_page.h"
#include "listen/words.h"
#include "written/performance.h"
#include "written/transcript.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double longestSound = 1.2; ///< seconds of a single step, so that words follow soon

} // namespace

ScoreActivity::ScoreActivity(Session &shared, Heard what, std::optional<BarRange> bars)
    : Activity(shared)
    , what_(std::move(what))
    , piece_(studied(what_.piece))
    , walk_(writtenOf(piece_))
    , bars_(bars)
{
}

void ScoreActivity::enter(const Moment &now)
{
    session_.heard = what_;
    if (!walk_.setHands(session_.hands))
        static_cast<void>(walk_.setHands(Hands::Both));
    if (bars_)
        static_cast<void>(walk_.toBar(bars_->first));
    say("The score of " + what_.title + ", " + numberInWords(walk_.lastBar())
            + " bars. Right and left walk through it. "
            + description_.tell(walk_, walk_.here(), walk_.hands()),
        now);
}

bool ScoreActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<ScoreActivity> handlers[] = {
        {Action::Next, &ScoreActivity::next},
        {Action::Previous, &ScoreActivity::previous},
        {Action::Start, &ScoreActivity::again},
        {Action::Again, &ScoreActivity::again},
        {Action::NoteNames, &ScoreActivity::again},
        {Action::CarryOn, &ScoreActivity::again},
        {Action::Stop, &ScoreActivity::stop},
        {Action::PlayBars, &ScoreActivity::toBars},
        {Action::ReadBars, &ScoreActivity::readBars},
        {Action::WhatBefore, &ScoreActivity::before},
        {Action::WhichKey, &ScoreActivity::key},
        {Action::SpellChord, &ScoreActivity::chord},
        {Action::SilentScore, &ScoreActivity::silent},
        {Action::BrailleBar, &ScoreActivity::braille},
        {Action::SaveBraille, &ScoreActivity::saveBraille},
        {Action::ByNote, &ScoreActivity::byNote},
        {Action::ByBeat, &ScoreActivity::byBeat},
        {Action::ByBar, &ScoreActivity::byBar},
        {Action::ByPhrase, &ScoreActivity::byPhrase},
        {Action::SetHands, &ScoreActivity::setHands},
        {Action::Hands, &ScoreActivity::nextHands},
    };
    // A lesson begins where the reader stands.
    if (request.action == Action::Learn && !request.song && !request.number && !request.bars) {
        const int bar = walk_.barAt(walk_.here().from).number;
        Request here = request;
        here.bars = BarRange{bar, bar};
        session_.host.perform(here, now);
        return true;
    }
    return handle(*this, handlers, request, now);
}

bool ScoreActivity::pause(const Moment &)
{
    const bool playing = session_.player.playing();
    words_.clear();
    session_.player.stop();
    return playing;
}

void ScoreActivity::pauseOrCarryOn(const Moment &now)
{
    if (pause(now))
        return;
    const int end = walk_.piece().bars.back().end();
    session_.player.demonstrate(
        soundOf({walk_.here().from, end}, walk_.hands(), piece_.length), now.uptime);
}

/// The notes of a stretch as a piece of their own; none is held for longer than `longest`.
Piece ScoreActivity::soundOf(Stretch stretch, Hands hands, double longest) const
{
    Piece sound;
    sound.spelling = piece_.spelling;
    const auto &bars = piece_.bars;
    const auto &written = walk_.piece().bars;
    const auto timeOf = [&](int at) {
        const WrittenBar &bar = walk_.barAt(at);
        const auto index = static_cast<std::size_t>(&bar - written.data());
        if (index >= bars.size())
            return piece_.length;
        const double end = index + 1 < bars.size() ? bars[index + 1] : piece_.length;
        const double share = bar.length > 0 ? static_cast<double>(at - bar.at) / bar.length : 0;
        return bars[index] + share * std::max(0.0, end - bars[index]);
    };
    constexpr double before = 0.04; // the beginning of a note may be written a little early
    const double from = timeOf(stretch.from) - before;
    const double to = timeOf(stretch.to) - before;
    for (std::size_t i = 0; i < piece_.notes.size(); ++i) {
        Note note = piece_.notes[i];
        const Hands hand = piece_.marks[i].hand;
        if (note.at < from || note.at >= to || hand == Hands::Both
            || (hands != Hands::Both && hand != hands))
            continue;
        note.at = std::max(0.0, note.at - from - before);
        note.endAt(note.at + std::min<double>(note.duration, longest));
        sound.notes.push_back(note);
    }
    measureLength(sound);
    return sound;
}

void ScoreActivity::show(Stretch stretch, Hands hands, std::string words, const Moment &now)
{
    session_.player.stop();
    words_ = std::move(words);
    const bool single = walk_.unit() == WalkUnit::Note && stretch == walk_.here();
    Piece sound = soundOf(stretch, hands, single ? longestSound : piece_.length);
    if (!sound.notes.empty())
        session_.player.demonstrate(std::move(sound), now.uptime);
    advance(now);
}

void ScoreActivity::advance(const Moment &now)
{
    if (session_.host.speaking())
        return; // an answer to something asked meanwhile comes first
    if (!braille_.empty()) {
        session_.wire.send("say", std::exchange(braille_, {}));
        session_.wire.send("done");
    }
    if (words_.empty() || session_.player.playing() || session_.player.paused())
        return;
    say(std::exchange(words_, {}), now);
}

void ScoreActivity::step(int by, const Moment &now)
{
    if (!walk_.step(by)) {
        say(by > 0 ? "That was the end." : "This is the beginning.", now);
        return;
    }
    std::string words = description_.tell(walk_, walk_.here(), walk_.hands());
    if (silent_)
        words.clear();
    show(walk_.here(), walk_.hands(), std::move(words), now);
}

void ScoreActivity::next(const Request &, const Moment &now)
{
    step(1, now);
}

void ScoreActivity::previous(const Request &, const Moment &now)
{
    step(-1, now);
}

/// Everything about where one is, as if one came from nowhere.
void ScoreActivity::again(const Request &, const Moment &now)
{
    description_.forget();
    show(walk_.here(), walk_.hands(), description_.tell(walk_, walk_.here(), walk_.hands()), now);
}

void ScoreActivity::stop(const Request &, const Moment &)
{
    words_.clear();
    session_.player.stop();
}

void ScoreActivity::toBars(const Request &request, const Moment &now)
{
    if (request.hands)
        static_cast<void>(walk_.setHands(*request.hands));
    if (walk_.toBar(request.bars->first))
        again(request, now);
    else
        say("The last bar is " + numberInWords(walk_.lastBar()) + ".", now);
}

/// Reads bars without going there.
void ScoreActivity::readBars(const Request &request, const Moment &now)
{
    const int first = request.bars ? request.bars->first : walk_.barAt(walk_.here().from).number;
    const auto from = walk_.bar(first);
    const auto to = request.bars ? walk_.bar(request.bars->last) : from;
    if (!from || !to) {
        say("The last bar is " + numberInWords(walk_.lastBar()) + ".", now);
        return;
    }
    Description whole;
    const Hands hands = request.hands.value_or(walk_.hands());
    const Stretch stretch{from->from, to->to};
    show(stretch, hands, whole.tell(walk_, stretch, hands), now);
}

void ScoreActivity::before(const Request &, const Moment &now)
{
    const auto stretch = walk_.beside(-1);
    if (!stretch) {
        say("Nothing comes before. This is the beginning.", now);
        return;
    }
    Description whole;
    show(*stretch, walk_.hands(), "Before: " + whole.tell(walk_, *stretch, walk_.hands()), now);
}

void ScoreActivity::key(const Request &, const Moment &now)
{
    const WrittenBar &bar = walk_.barAt(walk_.here().from);
    say(keyOf(bar) + ". " + numberInWords(bar.beats) + " " + numberInWords(bar.unit) + " time.",
        now);
}

void ScoreActivity::chord(const Request &, const Moment &now)
{
    show(walk_.here(), Hands::Both, spelledChord(walk_, walk_.here().from), now);
}

void ScoreActivity::silent(const Request &request, const Moment &now)
{
    silent_ = request.on.value_or(!silent_);
    say(silent_ ? "Only the notes sound." : "I say what is written.", now);
}

/// Nobody can speak it: it is shown when it has been said which bar it is.
void ScoreActivity::braille(const Request &, const Moment &now)
{
    const WrittenBar &bar = walk_.barAt(walk_.here().from);
    const auto index = static_cast<std::size_t>(&bar - walk_.piece().bars.data());
    say("Bar " + numberInWords(bar.number) + " in braille.", now);
    braille_ = brailleOfBar(walk_.piece(), index, walk_.hands());
}

void ScoreActivity::saveBraille(const Request &, const Moment &now)
{
    WrittenPiece titled = walk_.piece();
    if (titled.title.empty())
        titled.title = what_.title;
    const bool kept = keepFile(session_, what_.title, ".brf", brfOf(titled));
    say(kept ? "I wrote it in braille to the songs folder."
             : "I couldn't write it to the songs folder.",
        now);
}

void ScoreActivity::walkBy(WalkUnit unit, std::string_view name, const Moment &now)
{
    walk_.setUnit(unit);
    say("By " + std::string(name) + ".", now);
}

void ScoreActivity::byNote(const Request &, const Moment &now)
{
    walkBy(WalkUnit::Note, "note", now);
}

void ScoreActivity::byBeat(const Request &, const Moment &now)
{
    walkBy(WalkUnit::Beat, "beat", now);
}

void ScoreActivity::byBar(const Request &, const Moment &now)
{
    walkBy(WalkUnit::Bar, "bar", now);
}

void ScoreActivity::byPhrase(const Request &, const Moment &now)
{
    walkBy(WalkUnit::Phrase, "phrase", now);
}

void ScoreActivity::setHands(const Request &request, const Moment &now)
{
    const Hands hands = *request.hands;
    const std::string name = hands == Hands::Both ? "both hands"
        : hands == Hands::Right                   ? "the right hand"
                                                  : "the left hand";
    if (!walk_.setHands(hands)) {
        say("There is nothing for " + name + " in this piece.", now);
        return;
    }
    session_.hands = hands;
    session_.wire.send("hands", nameOf(hands));
    description_.forget();
    say("I read " + name + ".", now);
}

void ScoreActivity::nextHands(const Request &, const Moment &now)
{
    setHands({.action = Action::SetHands, .hands = nextOf(walk_.hands())}, now);
}

std::string ScoreActivity::place() const
{
    const int at = walk_.here().from;
    return "You are in the score of " + what_.title + ", " + placeOf(walk_.barAt(at), at) + ".";
}

std::string_view ScoreActivity::help() const
{
    return "Right and left walk through the score, Space says everything about where you are, "
           "Return plays on from here. "
           "One walks by notes, two by beats, three by bars, four by phrases. K says the key, X "
           "spells the chord, I says what comes before, D reads the bar, Y shows it in braille, Z "
           "makes me silent. Say "
           "go to bar five, left hand, or read me bar nine. Zero goes home.";
}

std::string_view ScoreActivity::suggestions() const
{
    return "go to bar five; by bar; left hand; what comes before; which key; spell the chord; read "
           "me the left hand of bar three; only the notes; or teach me this";
}

} // namespace kelo::engine
