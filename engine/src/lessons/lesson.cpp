#include "lessons/lesson.h"

#include "listen/words.h"
#include "reading/description.h"
#include "written/transcript.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double quietBeforeWords = 0.8; ///< nobody wants to be talked to while playing
constexpr double quietBeforeHint = 5;
constexpr double quietBeforeReminder = 15;
constexpr int missesBeforeDemo = 3;
constexpr int longestExample = 8; ///< bars

std::string spoken(Hands hands)
{
    return hands == Hands::Both ? "both hands" : hands == Hands::Right ? "right hand" : "left hand";
}

} // namespace

Lesson::Lesson(Piece piece, std::string title, Hands hands)
    : piece_(std::move(piece))
    , title_(std::move(title))
    , farewell_("That was the whole of " + title_ + ". Well done.")
    , hands_(hands)
    , excerpts_(excerptsOf(piece_, hands))
{
}

/// "Bars one and two"
std::string Lesson::bars() const
{
    const Excerpt &excerpt = excerpts_[place_];
    const int more = excerpt.lastBar - excerpt.firstBar;
    std::string text = (more == 0 ? "Bar " : "Bars ") + numberInWords(excerpt.firstBar);
    if (more > 0)
        text += (more == 1 ? " and " : " to ") + numberInWords(excerpt.lastBar);
    if (excerpt.upbeat)
        text += " with the upbeat";
    else if (excerpt.fromBeat > 0)
        text += " from beat " + numberInWords(excerpt.fromBeat);
    return text;
}

std::string Lesson::whereWeAre() const
{
    return bars() + ", " + spoken(excerpts_[place_].hands) + ".";
}

std::string Lesson::partOfAll() const
{
    const auto spoken = [](std::size_t number) { return numberInWords(static_cast<int>(number)); };
    return "Part " + spoken(place_ + 1) + " of " + spoken(excerpts_.size()) + ".";
}

int Lesson::bar() const
{
    auto part = excerpts_.begin() + static_cast<std::ptrdiff_t>(place_);
    while (part->joined && part != excerpts_.begin())
        --part;
    return part->firstBar;
}

/// Says what is new of the part, as far as that is wanted, and shows it.
Reply Lesson::present(std::string before)
{
    endAttempt();
    const Excerpt &part = excerpts_[place_];
    const std::string told = std::exchange(told_, bars());
    std::string where = whereWeAre();
    if (talk_ == Talk::Sounds || (talk_ == Talk::Changes && presented_ == place_ && !told.empty()))
        where.clear();
    else if (talk_ == Talk::Changes && told == told_)
        where = capitalised(spoken(part.hands)) + ".";
    presented_ = place_;
    if (!before.empty() && !where.empty())
        before += ' ';
    const bool isLong = part.lastBar - part.firstBar >= longestExample;
    return {{}, before + where, shows_ && !(part.joined && isLong)};
}

bool Lesson::narrow(int first, int last, Hands hands)
{
    std::vector<Excerpt> wanted;
    std::ranges::copy_if(excerpts_, std::back_inserter(wanted), [&](const Excerpt &part) {
        return !part.joined && part.hands == hands && part.lastBar >= first
            && part.firstBar <= last;
    });
    if (wanted.empty())
        return false;
    excerpts_ = std::move(wanted);
    place_ = 0;
    return true;
}

void Lesson::joinAll()
{
    Excerpt all = excerpts_.back();
    all.from = excerpts_.front().from;
    all.firstBar = excerpts_.front().firstBar;
    all.fromBeat = excerpts_.front().fromBeat;
    all.upbeat = excerpts_.front().upbeat;
    all.written.from = excerpts_.front().written.from;
    all.hands = hands_;
    all.steps = stepsOf(piece_, hands_, all.from, all.to);
    excerpts_ = {std::move(all)};
    shows_ = false;
    place_ = 0;
}

Reply Lesson::open(const std::string &words)
{
    endAttempt();
    told_ = bars();
    presented_ = place_;
    return {{}, words, shows_};
}

/// The first part that has this bar or a later one.
void Lesson::goTo(int bar)
{
    const auto found = std::ranges::find_if(
        excerpts_, [&](const Excerpt &excerpt) { return excerpt.lastBar >= bar; });
    moveTo(found == excerpts_.end() ? 0 : static_cast<std::size_t>(found - excerpts_.begin()));
}

void Lesson::moveTo(std::size_t place)
{
    finish(false);
    place_ = place;
    misses_ = 0;
}

void Lesson::endAttempt()
{
    if (!attempt_)
        return;
    for (const auto &[bar, keys] : attempt_->wrongKeys())
        wrongKeys_[bar] += keys;
    attempt_.reset();
}

/// Notes what has become of the part.
void Lesson::finish(bool passed)
{
    if (excerpts_.empty())
        return;
    const int tempo = passed ? attempt_->tempo() : 0;
    endAttempt();
    auto wrong = std::exchange(wrongKeys_, {});
    if (!passed && wrong.empty())
        return;
    const Excerpt &part = excerpts_[place_];
    played_ = {part.firstBar, part.lastBar, part.hands, std::move(wrong), tempo, passed};
}

Reply Lesson::begin(int bar)
{
    goTo(bar);
    const std::string how =
        place_ > 0 ? ". We go on where we were." : ". Listen, then play it back.";
    return present("A lesson on " + title_ + how);
}

Reply Lesson::repeat()
{
    return present();
}

Reply Lesson::skip()
{
    if (place_ + 1 >= excerpts_.size())
        return {{}, "This is the last part."};
    moveTo(place_ + 1);
    return present();
}

Reply Lesson::back()
{
    if (place_ == 0)
        return present("This is the first part.");
    moveTo(place_ - 1);
    return present();
}

Reply Lesson::toBar(int bar)
{
    if (bar > excerpts_.back().lastBar)
        return {{}, "The last bar is " + numberInWords(excerpts_.back().lastBar) + "."};
    goTo(bar);
    return present();
}

Reply Lesson::setHands(Hands which)
{
    auto found = excerptsOf(piece_, which);
    if (found.empty())
        return {{}, "There is nothing for the " + spoken(which) + " in this piece."};
    const int bar = excerpts_.empty() ? 1 : excerpts_[place_].firstBar;
    finish(false);
    excerpts_ = std::move(found);
    place_ = 0;
    hands_ = which;
    goTo(bar);
    return present();
}

std::string Lesson::notes() const
{
    const Excerpt &excerpt = excerpts_[place_];
    return Description{}.tell(Walk(writtenOf(piece_)), excerpt.written, excerpt.hands);
}

bool Lesson::entersWith(int pitch) const
{
    const auto &first = excerpts_[place_].steps.front();
    return std::ranges::find(first.pitches, pitch) != first.pitches.end();
}

void Lesson::listen(double now)
{
    if (excerpts_.empty())
        return;
    endAttempt();
    attempt_.emplace(excerpts_[place_].steps, piece_.spelling);
    touch_.emplace(excerpts_[place_].steps);
    lastKey_ = now;
    reminded_ = false;
}

void Lesson::touch(int pitch, int velocity, double now)
{
    if (attempt_)
        touch_->key(pitch, velocity, now);
}

/// What is said of how it was touched, where that was asked for; of what was good only by who says
/// all.
std::string Lesson::touched() const
{
    std::string text;
    const auto add = [&](const Touch::Verdict &verdict) {
        if (!verdict.words.empty() && (!verdict.good || talk_ == Talk::All))
            text += (text.empty() ? "" : " ") + verdict.words;
    };
    if (!attempt_->atOneGo())
        return text;
    if (attention_.loudness)
        add(touch_->loudness());
    if (attention_.legato)
        add(touch_->legato());
    return text;
}

Reply Lesson::press(int pitch, double now)
{
    if (!attempt_)
        return {};
    const bool was = attempt_->state() == Attempt::State::Going;
    lastKey_ = now;
    reminded_ = false;
    switch (attempt_->press(pitch, now)) {
    case Attempt::State::Passed:
        return passed();
    case Attempt::State::Missed:
        return {was ? std::optional(false) : std::nullopt, {}};
    case Attempt::State::Going:
        break;
    }
    return {};
}

Reply Lesson::passed()
{
    const std::string rhythm = attempt_->rhythm();
    std::string praise = talk_ == Talk::Sounds ? "" : rhythm;
    if (talk_ == Talk::All)
        praise = rhythm.empty() ? "Good." : "Good. " + rhythm;
    else if (rhythm == Attempt::inTime)
        praise.clear();
    if (const std::string touch = touched(); !touch.empty())
        praise += (praise.empty() ? "" : " ") + touch;
    finish(true);
    Reply reply;
    if (place_ + 1 < excerpts_.size()) {
        moveTo(place_ + 1);
        reply = present(praise);
    } else {
        reply.words = praise + (praise.empty() || farewell_.empty() ? "" : " ") + farewell_;
        reply.over = true;
    }
    reply.good = true;
    return reply;
}

Reply Lesson::missed()
{
    std::string words = talk_ == Talk::Sounds ? "" : attempt_->fault();
    if (++misses_ % missesBeforeDemo == 0 && shows_) {
        endAttempt();
        return {{}, talk_ == Talk::All ? words + " Listen again." : words, true};
    }
    attempt_->resume();
    if (talk_ != Talk::All)
        return {{}, words};
    return {{},
        words
            + (attempt_->atBeginning() ? " Try again." : " Go on from " + attempt_->next() + ".")};
}

Reply Lesson::advance(double now)
{
    const auto due = deadline();
    if (!due || now < *due)
        return {};
    if (attempt_->state() == Attempt::State::Going) {
        if (attempt_->expire(now) == Attempt::State::Missed)
            return {false, {}};
        reminded_ = true;
        if (talk_ != Talk::All)
            return {};
        return {
            {}, attempt_->begun() ? "Next comes " + attempt_->next() + "." : "It is your turn."};
    }
    lastKey_ = now;
    return missed();
}

std::optional<double> Lesson::deadline() const
{
    if (!attempt_)
        return {};
    if (attempt_->state() == Attempt::State::Missed)
        return lastKey_ + quietBeforeWords;
    if (const auto early = attempt_->deadline())
        return early;
    if (reminded_)
        return {};
    return lastKey_ + (attempt_->begun() ? quietBeforeHint : quietBeforeReminder);
}

} // namespace kelo::engine
