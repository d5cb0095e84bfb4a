#include "following/accompaniment_part.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr double writtenTogether = 0.04; ///< seconds between notes that are meant to be together

} // namespace

void AccompanimentPart::reach(const ScoreFollower &follower, const ScoreFollower::Match &match)
{
    const double at = follower.steps()[match.step].at - writtenTogether;
    const auto here = static_cast<std::size_t>(
        std::ranges::lower_bound(notes_, at, {}, &Note::at) - notes_.begin());
    // What the player has left behind stays unplayed.
    next_ = match.jumped ? here : std::max(next_, here);
}

std::optional<double> AccompanimentPart::deadline(const ScoreFollower &follower) const
{
    if (!follower.begun() || next_ == notes_.size())
        return {};
    const auto &steps = follower.steps();
    const Note &note = notes_[next_];
    const std::size_t step = follower.step();
    if (step + 1 < steps.size() && note.at > steps[step + 1].at - writtenTogether)
        return {}; // the player comes first
    const double after = note.at - steps[step].at;
    return after > writtenTogether ? follower.dueAt(note.at) : follower.since();
}

std::vector<Note> AccompanimentPart::take(const ScoreFollower &follower, double now)
{
    std::vector<Note> due;
    for (auto time = deadline(follower); time && *time <= now; time = deadline(follower))
        due.push_back(notes_[next_++]);
    return due;
}

} // namespace kelo::engine
