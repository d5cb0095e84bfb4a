#include "activities/practice_activity.h"

#include "activities/home_activity.h"
#include "lessons/exercises.h"
#include "listen/words.h"
#include "written/hand_division.h"
#include "written/performance.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double endOfWarmUp = 0.2; ///< of the time
constexpr double endOfWeakest = 0.75;
constexpr double quietAtEnd = 8; ///< seconds; a phrase that is being played is heard out

} // namespace

PracticeActivity::PracticeActivity(Session &shared, int minutes)
    : LessonTeaching(shared)
    , minutes_(minutes)
{
}

void PracticeActivity::enter(const Moment &now)
{
    until_ = now.uptime + minutes_ * 60;
    lastKey_ = now.uptime;
    warmUp(now);
    plan(now);
    Station &first = stations_.front();
    std::string words = capitalised(numberInWords(minutes_)) + " minutes. " + first.opening;
    if (!session_.pianoPresent)
        words.insert(0, "I don't see a piano yet. ");
    teach(first.lesson.open(words), now);
}

void PracticeActivity::leave(const Moment &now)
{
    if (!stations_.empty()) {
        Lesson &lesson = stations_.front().lesson;
        lesson.stop();
        keep(now);
        if (stations_.front().part != Part::WarmUp)
            session_.heard = {lesson.title(), lesson.wholePiece()};
    }
    if (paused())
        resume(now);
    TeachingActivity::leave(now);
}

void PracticeActivity::warmUp(const Moment &now)
{
    const Tonality key = keyOfDay(std::chrono::floor<std::chrono::days>(now.local));
    for (const Hands hands : {Hands::Right, Hands::Left}) {
        const Piece scale = scaleOf(key, hands);
        const std::string name = "The scale of " + nameOf(key);
        Lesson lesson(scale, name, hands);
        lesson.joinAll();
        lesson.show(true);
        lesson.sayAtEnd({});
        stations_.push_back({Part::WarmUp, "To warm up: " + name + ". " + fingersInWords(scale),
            std::move(lesson)});
    }
}

void PracticeActivity::plan(const Moment &now)
{
    const auto &names = session_.library.names();
    std::set<std::string> pieces;
    for (const SongName &name : names)
        pieces.insert(name.title);
    const auto plan = planFor(knownBars(session_.practice.bars()),
        std::chrono::floor<std::chrono::days>(now.local), pieces);
    for (const Assignment &bars : plan.weakest)
        add(Part::Weakest, bars.piece, bars.hands, &bars);
    if (plan.untouched)
        add(Part::Weakest, plan.untouched->piece, plan.untouched->hands, &*plan.untouched);
    if (!plan.known.empty())
        add(Part::Known, plan.known, Hands::Both, nullptr);
    if (plan.weakest.empty() && plan.known.empty() && !names.empty())
        add(Part::Weakest, names.front().title, session_.hands, nullptr);
}

/// Some bars of a piece, all of a known one, or the lesson on a new one.
void PracticeActivity::add(Part part, const std::string &piece, Hands hands, const Assignment *bars)
{
    const auto &names = session_.library.names();
    const auto song =
        static_cast<std::size_t>(std::ranges::find(names, piece, &SongName::title) - names.begin());
    const auto read =
        song < names.size() ? session_.library.load(song) : std::variant<Piece, ReadFault>();
    if (!std::holds_alternative<Piece>(read))
        return;
    const auto &whole = std::get<Piece>(read);
    const auto reading = session_.practice.readingOf(piece);
    Lesson lesson(studied(reading ? withReading(whole, *reading) : whole), piece, hands);
    // Where one hand rests, both hands together are the other one alone.
    const auto narrow = [&](Hands whose) { return lesson.narrow(bars->first, bars->last, whose); };
    if (lesson.empty() || (bars && !narrow(hands) && !narrow(Hands::Right) && !narrow(Hands::Left)))
        return;
    std::string opening = piece + ". " + lesson.whereWeAre();
    if (part == Part::Known) {
        lesson.joinAll();
        opening = "Now what you know: " + piece + ". I listen.";
    } else if (!bars) {
        static_cast<void>(lesson.begin(session_.progress.barOf(piece)));
        opening = "Something new: " + piece + ". Listen, then play it back. " + lesson.whereWeAre();
    }
    lesson.sayAtEnd({});
    stations_.push_back({part, opening, std::move(lesson)});
}

bool PracticeActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<PracticeActivity> handlers[] = {
        {Action::Start, &PracticeActivity::again},
        {Action::Again, &PracticeActivity::again},
        {Action::Previous, &PracticeActivity::again},
        {Action::StartOver, &PracticeActivity::again},
        {Action::Next, &PracticeActivity::next},
        {Action::NoteNames, &PracticeActivity::names},
        {Action::Drop, &PracticeActivity::stop},
        {Action::Stop, &PracticeActivity::stop},
    };
    return handle(*this, handlers, request, now);
}

void PracticeActivity::again(const Request &, const Moment &now)
{
    teach(current().repeat(), now);
}

/// Leaves this and goes on with what comes after it.
void PracticeActivity::next(const Request &, const Moment &now)
{
    current().stop();
    teach(goOn({.over = true}, now), now);
}

void PracticeActivity::names(const Request &, const Moment &now)
{
    const Station &station = stations_.front();
    say(station.part == Part::WarmUp ? station.opening : station.lesson.notes(), now);
}

void PracticeActivity::stop(const Request &, const Moment &now)
{
    over(now);
    say(farewell(), now);
}

void PracticeActivity::note(int pitch, int velocity, const Moment &now)
{
    lastKey_ = now.uptime;
    TeachingActivity::note(pitch, velocity, now);
}

Reply PracticeActivity::press(int pitch, const Moment &now)
{
    return goOn(current().press(pitch, now.uptime), now);
}

/// Where a part is done with, has the next one follow: of what there is time for.
Reply PracticeActivity::goOn(Reply reply, const Moment &now)
{
    const bool passed = reply.good && *reply.good;
    keep(now);
    const double share = 1 - (until_ - now.uptime) / (minutes_ * 60);
    const auto late = [&](Part part) {
        return (part == Part::WarmUp && share > endOfWarmUp)
            || (part == Part::Weakest && share > endOfWeakest) || share >= 1;
    };
    if (!reply.over && !(passed && late(stations_.front().part)))
        return reply;
    const auto next = std::find_if(stations_.begin() + 1, stations_.end(),
        [&](const Station &station) { return !late(station.part); });
    reply.over = next == stations_.end();
    if (passed) // the praise without what it says of the rhythm
        reply.words = reply.words.empty() ? "" : "Good. ";
    if (reply.over) {
        reply.words += farewell();
        reply.demo = false;
        return reply;
    }
    stations_.erase(stations_.begin(), next);
    stations_.front().lesson.setTalk(session_.talk, session_.attention);
    const Reply opened = stations_.front().lesson.open(reply.words + stations_.front().opening);
    return {reply.good, opened.words, opened.demo};
}

/// "Fifteen minutes. You played forty bars, thirty of them without a wrong key."
std::string PracticeActivity::farewell() const
{
    if (played_ == 0)
        return "That was practice for today.";
    return "That was practice for today. You played " + numberInWords(played_)
        + (played_ == 1 ? " bar, " : " bars, ") + numberInWords(clean_)
        + " of them without a wrong key.";
}

void PracticeActivity::over(const Moment &now)
{
    begin<HomeActivity>(now);
}

void PracticeActivity::keep(const Moment &now)
{
    Lesson &lesson = stations_.front().lesson;
    const auto part = lesson.takePlayed();
    if (!part)
        return;
    const auto bars = barsOf(*part, lesson.title(), now.local);
    session_.practice.add(bars);
    played_ += static_cast<int>(bars.size());
    clean_ += static_cast<int>(std::ranges::count(bars, 0, &PlayedBar::wrong));
}

void PracticeActivity::advance(const Moment &now)
{
    stations_.front().lesson.setTalk(session_.talk, session_.attention);
    if (!paused())
        teach(goOn(current().advance(now.uptime), now), now);
    TeachingActivity::advance(now);
    if (now.uptime >= std::max(until_, lastKey_ + quietAtEnd) && !paused() && !presenting()
        && !session_.host.speaking())
        stop({}, now);
}

std::optional<double> PracticeActivity::deadline() const
{
    if (paused())
        return {};
    const bool waits = !presenting() && !session_.host.speaking();
    return earliest({LessonTeaching::deadline(),
        waits ? std::optional(std::max(until_, lastKey_ + quietAtEnd)) : std::nullopt});
}

std::string PracticeActivity::place() const
{
    const Station &station = stations_.front();
    return "You practise for " + numberInWords(minutes_) + " minutes. " + station.lesson.title()
        + ". " + station.lesson.whereWeAre();
}

std::string_view PracticeActivity::help() const
{
    return "I lead you: a scale to warm up, the bars that need you most, then a piece that you "
           "know. Play what I play. Space plays it again, N says its notes, right goes on to what "
           "comes next. Return pauses. Zero ends it.";
}

std::string_view PracticeActivity::suggestions() const
{
    return "repeat; next; note names; how am I doing; slower; or go home";
}

} // namespace kelo::engine
