#include "assistant/score_requests.h"

#include "activities/follow_activity.h"
#include "activities/hands_activity.h"
#include "activities/pieces.h"
#include "activities/score_activity.h"

#include <utility>

namespace kelo::engine {

void ScoreRequests::read(const Request &request, const Moment &now)
{
    auto song = askedSong(session_, request, now);
    if (!song)
        return;
    if (request.hands)
        session_.hands = *request.hands;
    session_.host.begin(
        std::make_unique<ScoreActivity>(session_, std::move(*song), request.bars), now);
}

/// What only the score can tell begins with the score.
void ScoreRequests::readFirst(const Request &request, const Moment &now)
{
    read({.action = Action::ReadScore}, now);
    if (session_.heard)
        session_.host.perform(request, now);
}

void ScoreRequests::follow(const Request &request, const Moment &now)
{
    // A number is a tempo; a piece is named by its name.
    Request piece = request;
    piece.number.reset();
    auto song = askedSong(session_, piece, now);
    if (!song || askForHands(session_, *song, request, now))
        return;
    auto next = std::make_unique<FollowActivity>(session_, std::move(*song), request);
    if (const std::string fault = next->fault(); !fault.empty())
        session_.say(fault, now);
    else
        session_.host.begin(std::move(next), now);
}

void ScoreRequests::key(const Request &, const Moment &now)
{
    if (!session_.heard) {
        session_.say("I don't know of which piece.", now);
        return;
    }
    const auto &[title, piece] = *session_.heard;
    session_.say(title + " is in " + nameOf(tonalityOf(piece->notes)) + ".", now);
}

} // namespace kelo::engine
