#include "assistant/practice_requests.h"

#include "activities/pieces.h"
#include "activities/practice_activity.h"
#include "listen/words.h"
#include "practice/practice_plan.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int usualMinutes = 15;
constexpr int mostMinutes = 120;

std::chrono::local_days today(const Moment &now)
{
    return std::chrono::floor<std::chrono::days>(now.local);
}

std::string counted(int count, std::string_view what)
{
    return numberInWords(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

/// "bars five and six of Ode to Joy, left hand"
std::string named(const Assignment &part)
{
    const int more = part.last - part.first;
    std::string text = (more == 0 ? "bar " : "bars ") + numberInWords(part.first);
    if (more > 0)
        text += (more == 1 ? " and " : " to ") + numberInWords(part.last);
    return text + " of " + part.piece
        + (part.hands == Hands::Both        ? ", both hands"
                : part.hands == Hands::Left ? ", left hand"
                                            : ", right hand");
}

std::set<std::string> titles(const Session &session)
{
    std::set<std::string> all;
    for (const SongName &name : session.library.names())
        all.insert(name.title);
    return all;
}

constexpr std::string_view nothingYet =
    "I don't know yet: practise with me, and I keep in mind how it goes. Say teach me and a song.";

} // namespace

/// "Bar five of Ode to Joy, left hand: three wrong keys the last time. Then ..."
void PracticeRequests::plan(const Request &, const Moment &now)
{
    const auto known = knownBars(session_.practice.bars());
    if (known.empty()) {
        session_.say(nothingYet, now);
        return;
    }
    const PracticePlan plan = planFor(known, today(now), titles(session_));
    std::string text;
    if (!plan.weakest.empty()) {
        const Assignment &first = plan.weakest.front();
        text = capitalised(named(first)) + ": "
            + (first.wrong > 0 ? counted(first.wrong, "wrong key") + " the last time. "
                               : "it is time to play it again. ");
    }
    if (plan.weakest.size() > 1)
        text += "Then " + named(plan.weakest[1]) + ". ";
    if (plan.untouched)
        text += plan.untouched->piece + " has waited for " + counted(plan.untouched->days, "day")
            + ". ";
    session_.say(text.empty()
            ? "All that you practised is fresh. Learn something new, or play what you like."
            : text + "Say fifteen minutes of practice, and I lead you.",
        now);
}

/// How it goes, in two sentences.
void PracticeRequests::report(const Request &, const Moment &now)
{
    const auto played = session_.practice.bars();
    const auto known = knownBars(played);
    if (known.empty()) {
        session_.say(nothingYet, now);
        return;
    }
    const PracticeWeek week = weekUntil(today(now), played, known);
    std::string text = "In the last seven days you practised on " + counted(week.days, "day");
    if (week.bars > 0)
        text += ", and of " + counted(week.bars, "bar") + " " + numberInWords(week.clean)
            + " percent went without a wrong key";
    if (week.bars > 0 && week.cleanBefore >= 0 && week.cleanBefore != week.clean)
        text += week.clean > week.cleanBefore ? ", more than the week before"
                                              : ", fewer than the week before";
    text += ". " + capitalised(numberInWords(week.sure)) + " of the " + counted(week.known, "bar")
        + " that you practised went well the last time";
    const PracticePlan plan = planFor(known, today(now), titles(session_));
    if (!plan.weakest.empty())
        text += ", and " + named(plan.weakest.front())
            + (plan.weakest.front().first == plan.weakest.front().last ? ", needs" : ", need")
            + " you most";
    session_.say(text + ".", now);
}

void PracticeRequests::lead(const Request &request, const Moment &now)
{
    refreshSongs(session_);
    session_.host.begin(std::make_unique<PracticeActivity>(session_,
                            std::clamp(request.number.value_or(usualMinutes), 1, mostMinutes)),
        now);
}

/// It is asked for twice; "on" is an answer.
void PracticeRequests::forget(const Request &request, const Moment &now)
{
    if (request.on == false) {
        leaving_.clear();
        session_.say("I keep it in mind.", now);
        return;
    }
    const bool answered = request.on && !leaving_.empty();
    if (answered && sure_) {
        session_.progress.forget(leaving_);
        const std::size_t gone = session_.practice.forget(leaving_);
        session_.say(gone > 0 ? leaving_ + " is forgotten." : "I couldn't forget it.", now);
        leaving_.clear();
        return;
    }
    if (!answered)
        leaving_ = request.song ? session_.library.names()[*request.song].title
            : session_.heard    ? session_.heard->title
                                : "";
    if (leaving_.empty()) {
        session_.say("I don't know which piece.", now);
        return;
    }
    const auto count =
        static_cast<int>(std::ranges::count(session_.practice.bars(), leaving_, &PlayedBar::piece));
    if (count == 0) {
        session_.say("I remember nothing of " + leaving_ + ".", now);
        return;
    }
    sure_ = answered;
    const Request yes{.action = Action::ForgetPiece, .on = true};
    const Request no{.action = Action::ForgetPiece, .on = false};
    session_.host.ask(answered ? capitalised(counted(count, "bar"))
                + " that you played will be gone. Are you sure? Yes or no."
                               : "Forget what you practised of " + leaving_ + "? Yes or no.",
        yes, no, now);
}

void PracticeRequests::exportAll(const Request &, const Moment &now)
{
    const auto played = session_.practice.bars();
    if (played.empty()) {
        session_.say(nothingYet, now);
        return;
    }
    const bool kept = keepFile(session_, "Practice " + stampOf(now), ".csv", tableOf(played));
    session_.say(kept ? "I wrote it as a table to the songs folder."
                      : "I couldn't write it to the songs folder.",
        now);
}

} // namespace kelo::engine
