#include "lessons/lesson.h"

#include "listen/words.h"
#include "theory/pitch_names.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double quietBeforeWords = 0.8; ///< nobody wants to be talked to while playing
constexpr double quietBeforeHint = 5;
constexpr double quietBeforeReminder = 15;
constexpr int missesBeforeDemo = 3;

std::string spoken(Hands hands)
{
    return hands == Hands::Both ? "both hands" : hands == Hands::Right ? "right hand" : "left hand";
}

} // namespace

Lesson::Lesson(Piece music, std::string name, Hands which)
    : piece(std::move(music))
    , songTitle(std::move(name))
    , chosen(which)
    , excerpts(excerptsOf(piece, which))
{
}

std::string Lesson::whereWeAre() const
{
    const Excerpt &excerpt = excerpts[place];
    const std::string first = numberInWords(excerpt.firstBar);
    return (excerpt.lastBar > excerpt.firstBar
                   ? "Bars " + first + " and " + numberInWords(excerpt.lastBar)
                   : "Bar " + first)
        + ", " + spoken(excerpt.hands) + ".";
}

Reply Lesson::present(std::string before)
{
    attempt.reset();
    if (!before.empty())
        before += ' ';
    return {{}, before + whereWeAre(), true};
}

/// The first part that has this bar or a later one.
void Lesson::goTo(int bar)
{
    const auto found = std::ranges::find_if(
        excerpts, [&](const Excerpt &excerpt) { return excerpt.lastBar >= bar; });
    place = found == excerpts.end() ? 0 : static_cast<std::size_t>(found - excerpts.begin());
    misses = 0;
}

Reply Lesson::begin(int bar)
{
    goTo(bar);
    const std::string how =
        place > 0 ? ". We go on where we were." : ". Listen, then play it back.";
    return present("A lesson on " + songTitle + how);
}

Reply Lesson::repeat()
{
    return present();
}

Reply Lesson::skip()
{
    if (place + 1 >= excerpts.size())
        return {{}, "This is the last part."};
    ++place;
    misses = 0;
    return present();
}

Reply Lesson::back()
{
    if (place == 0)
        return present("This is the first part.");
    --place;
    misses = 0;
    return present();
}

Reply Lesson::toBar(int bar)
{
    if (bar > excerpts.back().lastBar)
        return {{}, "The last bar is " + numberInWords(excerpts.back().lastBar) + "."};
    goTo(bar);
    return present();
}

Reply Lesson::setHands(Hands which)
{
    auto found = excerptsOf(piece, which);
    if (found.empty())
        return {{}, "There is nothing for the " + spoken(which) + " in this piece."};
    const int bar = excerpts.empty() ? 1 : excerpts[place].firstBar;
    excerpts = std::move(found);
    chosen = which;
    goTo(bar);
    return present();
}

std::string Lesson::notes() const
{
    const auto handNotes = [&](Hands hand) {
        std::string text;
        for (const Excerpt &excerpt : excerptsOf(piece, hand)) {
            if (excerpt.lastBar < excerpts[place].firstBar
                || excerpt.firstBar > excerpts[place].lastBar)
                continue;
            for (const Step &step : excerpt.steps) {
                if (step.at < excerpts[place].from || step.at >= excerpts[place].to)
                    continue;
                text += (text.empty() ? "" : ", ") + pitchNames(step.pitches, piece.spelling);
                text += step.pitches.size() > 1 ? " together" : "";
            }
        }
        return text.empty() ? text
                            : (hand == Hands::Right ? "Right hand: " : "Left hand: ") + text + ".";
    };
    if (excerpts[place].hands != Hands::Both)
        return handNotes(excerpts[place].hands);
    return handNotes(Hands::Right) + " " + handNotes(Hands::Left);
}

void Lesson::listen(double now)
{
    if (excerpts.empty())
        return;
    attempt.emplace(excerpts[place].steps, piece.spelling);
    lastKey = now;
    reminded = false;
}

Reply Lesson::press(int pitch, double now)
{
    if (!attempt)
        return {};
    const bool was = attempt->state() == Attempt::State::Going;
    lastKey = now;
    reminded = false;
    switch (attempt->press(pitch, now)) {
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
    const std::string rhythm = attempt->rhythm();
    const std::string praise = rhythm.empty() ? "Good." : "Good. " + rhythm;
    Reply reply;
    if (place + 1 < excerpts.size()) {
        ++place;
        misses = 0;
        reply = present(praise);
    } else {
        attempt.reset();
        reply.words = praise + " That was the whole of " + songTitle + ". Well done.";
        reply.over = true;
    }
    reply.good = true;
    return reply;
}

Reply Lesson::missed()
{
    std::string words = attempt->fault();
    if (++misses % missesBeforeDemo == 0) {
        attempt.reset();
        return {{}, words + " Listen again.", true};
    }
    attempt.emplace(excerpts[place].steps, piece.spelling);
    reminded = false;
    return {{}, words + " Try again."};
}

Reply Lesson::advance(double now)
{
    const auto due = deadline();
    if (!due || now < *due)
        return {};
    if (attempt->state() == Attempt::State::Going) {
        if (attempt->expire(now) == Attempt::State::Missed)
            return {false, {}};
        reminded = true;
        return {{}, attempt->begun() ? "Next comes " + attempt->next() + "." : "It is your turn."};
    }
    lastKey = now;
    return missed();
}

std::optional<double> Lesson::deadline() const
{
    if (!attempt)
        return {};
    if (attempt->state() == Attempt::State::Missed)
        return lastKey + quietBeforeWords;
    if (const auto early = attempt->deadline())
        return early;
    if (reminded)
        return {};
    return lastKey + (attempt->begun() ? quietBeforeHint : quietBeforeReminder);
}

} // namespace kelo::engine
