#include "activities/follow_activity.h"

#include "lessons/excerpt.h"
#include "listen/words.h"
#include "written/performance.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int slowest = 20; ///< percent
constexpr int fastest = 200;
constexpr int tempoStep = 5;
constexpr int badPassesBeforeSlower = 3;
constexpr int tolerated = 1; ///< wrong keys of a pass that is still good

std::pair<double, double> timesOf(const Piece &piece, BarRange bars)
{
    const auto first = barPlace(piece, bars.first);
    const auto last = barPlace(piece, bars.last);
    const double from = first ? piece.bars[*first] : 0;
    const bool ends = !last || *last + 1 >= piece.bars.size();
    return {from, ends ? piece.length + 1 : piece.bars[*last + 1]};
}

std::vector<FollowedStep> stepsFor(const Piece &piece, BarRange bars, Hands hands)
{
    std::vector<FollowedStep> steps;
    int bar = 0;
    const auto [from, to] = timesOf(piece, bars);
    for (const Step &step : stepsOf(piece, hands, from, to))
        steps.push_back({step.at, step.pitches, std::exchange(bar, step.bar) != step.bar});
    return steps;
}

/// What the other hand plays meanwhile; with other instruments, where there are some.
std::vector<Note> othersOf(const Piece &piece, BarRange bars, Hands hands)
{
    std::vector<Note> others;
    constexpr int drumChannel = 9;
    const auto [from, to] = timesOf(piece, bars);
    for (std::size_t i = 0; i < piece.notes.size(); ++i) {
        const Hands hand = piece.marks[i].hand;
        const Note &note = piece.notes[i];
        const bool mine = hand != Hands::Both && (hands == Hands::Both || hand == hands);
        if (!mine && note.channel != drumChannel && note.at >= from - 0.02 && note.at < to - 0.02)
            others.push_back(note);
    }
    return others;
}

/// A piece without bars is one.
bool hasBar(const Piece &piece, int bar)
{
    return piece.bars.empty() || barPlace(piece, bar);
}

BarRange allOf(const Piece &piece)
{
    const int last = piece.barNumbers.empty() ? static_cast<int>(piece.bars.size())
                                              : std::ranges::max(piece.barNumbers);
    return {piece.barNumbers.empty() ? 1 : piece.barNumbers.front(), std::max(1, last)};
}

/// Why some bars cannot be followed; empty where they can.
std::string faultOf(const Piece &piece, BarRange bars, bool silent)
{
    if (!hasBar(piece, bars.first) || !hasBar(piece, bars.last))
        return "The last bar is " + numberInWords(allOf(piece).last) + ".";
    return silent ? "There is nothing to play there for these hands." : "";
}

} // namespace

FollowActivity::FollowActivity(Session &shared, Heard what, const Request &request)
    : Activity(shared)
    , what_(std::move(what))
    , piece_(studied(what_.piece))
    , bars_(request.bars.value_or(allOf(piece_)))
    , hands_(request.hands.value_or(shared.hands))
    , tempo_(std::clamp(request.number.value_or(100), slowest, fastest))
    , follower_(stepsFor(piece_, bars_, hands_), 100.0 / tempo_)
    , part_(othersOf(piece_, bars_, hands_))
{
}

std::string FollowActivity::fault() const
{
    return faultOf(piece_, bars_, follower_.steps().empty());
}

std::string FollowActivity::task() const
{
    const std::string hand = hands_ == Hands::Both ? "both hands"
        : hands_ == Hands::Right                   ? "the right hand"
                                                   : "the left hand";
    const std::string first = numberInWords(bars_.first);
    const std::string bars = bars_ == allOf(piece_) ? ""
        : bars_.first == bars_.last                 ? " of bar " + first
                                    : " of bars " + first + " to " + numberInWords(bars_.last);
    return "You play " + hand + bars + ".";
}

void FollowActivity::enter(const Moment &now)
{
    session_.heard = what_;
    session_.wire.send("live", "1");
    begin(what_.title + ". " + task() + " I follow you.", now);
}

void FollowActivity::leave(const Moment &now)
{
    release(now.uptime + 1e9);
    session_.wire.send("live", "0");
    Activity::leave(now);
}

/// Waits for the first key.
void FollowActivity::begin(const std::string &words, const Moment &now)
{
    release(now.uptime + 1e9);
    session_.player.open(piece_);
    follower_.restart();
    part_.restart();
    wrong_ = 0;
    wrongKeys_.clear();
    lastKeys_ = 0;
    if (!words.empty())
        say(words, now);
}

bool FollowActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<FollowActivity> handlers[] = {
        {Action::Start, &FollowActivity::again},
        {Action::Again, &FollowActivity::again},
        {Action::StartOver, &FollowActivity::again},
        {Action::Next, &FollowActivity::next},
        {Action::Previous, &FollowActivity::previous},
        {Action::CarryOn, &FollowActivity::show},
        {Action::NoteNames, &FollowActivity::show},
        {Action::PlayBars, &FollowActivity::toBars},
        {Action::Follow, &FollowActivity::toBars},
        {Action::SetHands, &FollowActivity::setHands},
        {Action::Hands, &FollowActivity::nextHands},
        {Action::Tempo, &FollowActivity::tempo},
        {Action::Slower, &FollowActivity::slower},
        {Action::Faster, &FollowActivity::faster},
    };
    const bool another = request.song.has_value();
    return !another && handle(*this, handlers, request, now);
}

void FollowActivity::again(const Request &, const Moment &now)
{
    begin(task(), now);
}

/// How the player's part sounds.
void FollowActivity::show(const Request &, const Moment &now)
{
    begin({}, now);
    const auto [from, to] = timesOf(piece_, bars_);
    Excerpt excerpt{from, to, bars_.first, bars_.last, hands_, {}};
    session_.player.demonstrate(pieceOf(excerpt, piece_), now.uptime);
}

bool FollowActivity::pause(const Moment &)
{
    const bool playing = session_.player.playing();
    session_.player.stop();
    return playing;
}

void FollowActivity::pauseOrCarryOn(const Moment &now)
{
    if (!pause(now))
        show({}, now);
}

void FollowActivity::change(BarRange bars, Hands hands, const Moment &now)
{
    auto steps = stepsFor(piece_, bars, hands);
    if (const std::string fault = faultOf(piece_, bars, steps.empty()); !fault.empty()) {
        say(fault, now);
        return;
    }
    bars_ = bars;
    hands_ = hands;
    follower_ = ScoreFollower(std::move(steps), 100.0 / tempo_);
    part_ = AccompanimentPart(othersOf(piece_, bars, hands));
    badPasses_ = 0;
    begin(task(), now);
}

void FollowActivity::toBars(const Request &request, const Moment &now)
{
    if (request.number)
        tempo_ = std::clamp(*request.number, slowest, fastest);
    change(request.bars.value_or(bars_), request.hands.value_or(hands_), now);
}

void FollowActivity::next(const Request &, const Moment &now)
{
    shift(1, now);
}

void FollowActivity::previous(const Request &, const Moment &now)
{
    shift(-1, now);
}

/// To as many bars after these, or before them; those at an end may be fewer.
void FollowActivity::shift(int by, const Moment &now)
{
    const BarRange all = allOf(piece_);
    const int count = bars_.last - bars_.first + 1;
    const BarRange bars{
        std::max(all.first, bars_.first + by * count), std::min(all.last, bars_.last + by * count)};
    if (bars.first > bars.last)
        say(bars_ == all ? "You play all of it. Say which bars you want."
                : by > 0 ? "These are the last bars."
                         : "These are the first bars.",
            now);
    else
        change(bars, hands_, now);
}

void FollowActivity::setHands(const Request &request, const Moment &now)
{
    session_.hands = *request.hands;
    session_.wire.send("hands", nameOf(session_.hands));
    change(bars_, session_.hands, now);
}

void FollowActivity::nextHands(const Request &, const Moment &now)
{
    setHands({.action = Action::SetHands, .hands = nextOf(hands_)}, now);
}

void FollowActivity::setTempo(int percent, const Moment &now)
{
    tempo_ = std::clamp(percent, slowest, fastest);
    follower_ = ScoreFollower(stepsFor(piece_, bars_, hands_), 100.0 / tempo_);
    begin(numberInWords(tempo_) + " percent.", now);
}

void FollowActivity::tempo(const Request &request, const Moment &now)
{
    setTempo(request.number.value_or(100), now);
}

void FollowActivity::slower(const Request &, const Moment &now)
{
    setTempo(tempo_ - 2 * tempoStep, now);
}

void FollowActivity::faster(const Request &, const Moment &now)
{
    setTempo(tempo_ + 2 * tempoStep, now);
}

void FollowActivity::note(int pitch, int velocity, const Moment &now)
{
    if (velocity <= 0)
        return;
    if (session_.host.speaking())
        session_.host.hush();
    if (session_.player.playing())
        session_.player.open(piece_);
    const auto match = follower_.press(pitch, now.uptime);
    if (!match.right) {
        ++wrong_;
        ++wrongKeys_[barAt(follower_.steps()[follower_.step()].at)];
        session_.wire.send("flash", "wrong");
    }
    part_.reach(follower_, match);
    if (follower_.atEnd() && match.right)
        ++lastKeys_;
    advance(now);
}

/// Sounds what is due, and begins again after the last step.
void FollowActivity::advance(const Moment &now)
{
    release(now.uptime);
    for (const Note &note : part_.take(follower_, now.uptime)) {
        session_.player.touch(note.pitch, note.velocity);
        held_.push_back({note.pitch, now.uptime + note.duration * follower_.pace()});
    }
    const bool whole = follower_.atEnd() && lastKeys_ >= follower_.steps().back().pitches.size()
        && !part_.deadline(follower_);
    if (whole)
        passed(now);
}

/// The number of the bar that sounds at a time of the piece.
int FollowActivity::barAt(double at) const
{
    constexpr double early = 0.04;
    const auto after = std::ranges::upper_bound(piece_.bars, at + early) - piece_.bars.begin();
    const auto index = static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - 1, 0));
    return index < piece_.barNumbers.size() ? piece_.barNumbers[index]
                                            : static_cast<int>(index) + 1;
}

void FollowActivity::passed(const Moment &now)
{
    const bool clean = wrong_ <= tolerated;
    const auto percent = static_cast<int>(std::lround(100 / follower_.pace()));
    session_.practice.add(barsOf(
        {bars_.first, bars_.last, hands_, std::move(wrongKeys_), percent}, what_.title, now.local));
    session_.wire.send("flash", clean ? "good" : "wrong");
    badPasses_ = clean ? 0 : badPasses_ + 1;
    const bool falls = badPasses_ == badPassesBeforeSlower;
    if (clean || falls) {
        badPasses_ = 0;
        tempo_ = std::clamp(tempo_ + (clean ? tempoStep : -2 * tempoStep), slowest, fastest);
        follower_ = ScoreFollower(follower_.steps(), 100.0 / tempo_);
    }
    std::vector<Held> ringing = std::exchange(held_, {}); // the last notes end by themselves
    begin(clean     ? "Good. Now " + numberInWords(tempo_) + " percent."
            : falls ? "Slower: " + numberInWords(tempo_) + " percent."
                    : numberInWords(wrong_) + " wrong keys. Once more.",
        now);
    held_ = std::move(ringing);
}

void FollowActivity::release(double until)
{
    for (const Held &each : held_) {
        if (each.until <= until)
            session_.player.touch(each.pitch, 0);
    }
    std::erase_if(held_, [until](const Held &each) { return each.until <= until; });
}

std::optional<double> FollowActivity::deadline() const
{
    std::optional<double> next = part_.deadline(follower_);
    for (const Held &each : held_)
        next = std::min(next.value_or(each.until), each.until);
    return next;
}

std::optional<Beat> FollowActivity::beat(const Moment &now) const
{
    Beat beat = beatOf(piece_, session_.player, now);
    beat.tempo = static_cast<int>(std::lround(beat.tempo * tempo_ / 100.0));
    beat.nextBar = now.uptime;
    return beat;
}

std::string FollowActivity::place() const
{
    return "I follow you through " + what_.title + ". " + task() + " " + numberInWords(tempo_)
        + " percent.";
}

std::string_view FollowActivity::help() const
{
    return "Play your part: the other hand goes with you and waits where you wait. Wherever you go "
           "I find you again. At the end it begins anew, a little faster after a clean pass. "
           "Return plays your part, Space begins anew, left and right change the bars. Say bars "
           "five to eight, left hand, sixty "
           "percent, or count me in. Zero goes home.";
}

std::string_view FollowActivity::suggestions() const
{
    return "bars five to eight; left hand; sixty percent; count me in; again; or go home";
}

} // namespace kelo::engine
