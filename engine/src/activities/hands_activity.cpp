#include "activities/hands_activity.h"

#include "lessons/excerpt.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double shown = 10; ///< seconds of each way

} // namespace

HandsActivity::HandsActivity(Session &shared, Heard what, HandsInDoubt doubt, const Request &wanted)
    : Activity(shared)
    , what_(std::move(what))
    , doubt_(std::move(doubt))
    , wanted_(wanted)
{
}

void HandsActivity::enter(const Moment &now)
{
    session_.heard = what_;
    const Request yes{.action = Action::ChooseHands, .on = true};
    const Request no{.action = Action::ChooseHands, .on = false};
    session_.host.ask("I'm not sure which hand plays what in " + what_.title
            + ". Shall I play both ways? Yes or no.",
        yes, no, now);
}

bool HandsActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<HandsActivity> handlers[] = {
        {Action::ChooseHands, &HandsActivity::answer},
        {Action::Start, &HandsActivity::playBoth},
        {Action::Agree, &HandsActivity::playBoth},
        {Action::Again, &HandsActivity::playBoth},
        {Action::Previous, &HandsActivity::takeFirst},
        {Action::Next, &HandsActivity::takeSecond},
        {Action::Stop, &HandsActivity::stop},
    };
    return handle(*this, handlers, request, now);
}

/// Who does not want to hear them takes the likelier one.
void HandsActivity::answer(const Request &request, const Moment &now)
{
    if (request.number)
        take(*request.number == 2 ? 2 : 1, now);
    else if (request.on.value_or(false))
        playBoth(request, now);
    else
        take(1, now);
}

void HandsActivity::playBoth(const Request &, const Moment &now)
{
    session_.player.stop();
    next_ = Step::PlayFirst;
    say("First: " + std::string(doubt_.firstIs) + ".", now);
}

void HandsActivity::advance(const Moment &now)
{
    if (session_.host.speaking() || session_.player.playing() || session_.player.paused())
        return;
    switch (std::exchange(next_, Step::Nothing)) {
    case Step::Nothing:
        break;
    case Step::PlayFirst:
        show(1, now);
        next_ = Step::SaySecond;
        break;
    case Step::SaySecond:
        say("Second: " + std::string(doubt_.secondIs) + ".", now);
        next_ = Step::PlaySecond;
        break;
    case Step::PlaySecond:
        show(2, now);
        next_ = Step::Ask;
        break;
    case Step::Ask:
        session_.host.ask(
            "Which one, the first or the second? Left is the first, right the second.",
            {.action = Action::ChooseHands, .number = 1},
            {.action = Action::ChooseHands, .number = 2}, now);
        break;
    }
}

/// One hand of some bars, from where the two ways part.
void HandsActivity::show(int reading, const Moment &now)
{
    const Piece piece = withReading(what_.piece, reading);
    const auto first = handsOf(what_.piece);
    const auto parts =
        static_cast<std::size_t>(std::ranges::mismatch(first, doubt_.second).in1 - first.begin());
    const double at = parts < piece.notes.size() ? piece.notes[parts].at : 0;
    const auto bar = std::ranges::upper_bound(piece.bars, at);
    Excerpt excerpt;
    excerpt.from = bar == piece.bars.begin() ? 0 : *(bar - 1);
    excerpt.to = excerpt.from + shown;
    excerpt.hands = Hands::Right;
    Piece sound = pieceOf(excerpt, piece);
    if (sound.notes.empty()) {
        excerpt.hands = Hands::Left;
        sound = pieceOf(excerpt, piece);
    }
    session_.player.demonstrate(std::move(sound), now.uptime);
}

void HandsActivity::takeFirst(const Request &, const Moment &now)
{
    take(1, now);
}

void HandsActivity::takeSecond(const Request &, const Moment &now)
{
    take(2, now);
}

void HandsActivity::take(int reading, const Moment &now)
{
    session_.practice.keepReading(what_.title, reading);
    session_.heard = {what_.title, withReading(what_.piece, reading)};
    Request wanted = wanted_;
    wanted.song.reset(); // it is what was heard last
    if (wanted.action == Action::Learn)
        wanted.number.reset();
    session_.host.perform(wanted, now);
}

void HandsActivity::stop(const Request &, const Moment &)
{
    next_ = Step::Nothing;
    session_.player.stop();
}

std::string HandsActivity::place() const
{
    return "I ask which hand plays what in " + what_.title + ".";
}

std::string_view HandsActivity::help() const
{
    return "There are two ways to share this piece between the hands. Space plays both, left takes "
           "the first, right the second. Zero goes home.";
}

std::string_view HandsActivity::suggestions() const
{
    return "again; the first way; the second way; or go home";
}

bool askForHands(Session &session, const Heard &what, const Request &wanted, const Moment &now)
{
    if (session.practice.readingOf(what.title))
        return false;
    auto doubt = handsInDoubt(what.piece);
    if (!doubt)
        return false;
    session.host.begin(
        std::make_unique<HandsActivity>(session, what, std::move(*doubt), wanted), now);
    return true;
}

} // namespace kelo::engine
