// How well a player is followed: pieces that ship, played with wrong, added and left out notes, a
// tempo that drifts by 30 % both ways, and bars that are skipped and repeated. Prints how many keys
// were matched, how soon a jump was found, and how far the accompaniment is from where the player's
// own time would have it.

#include "following/accompaniment_part.h"
#include "following/score_follower.h"
#include "lessons/excerpt.h"
#include "songs/library.h"
#include "written/performance.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <utility>

using namespace kelo::engine;

namespace {

constexpr int seeds = 20;
constexpr double wrongKeys = 0.03;
constexpr double addedKeys = 0.02;
constexpr double leftOut = 0.03;
constexpr double jitter = 0.02; ///< seconds, one standard deviation
constexpr double drift = 0.3;

struct Played {
    double at;
    int pitch;
    int step; ///< below 0: a key too many
    double written; ///< the player's place, in seconds of the piece
    bool jumped = false; ///< the first one after a jump
    double pace = 1;
};

struct Figures {
    int keys = 0;
    int matched = 0;
    int jumps = 0;
    std::vector<double> found; ///< quarters until a jump was found
    std::vector<double> late; ///< seconds of accompaniment notes, off the player's own time
};

std::vector<FollowedStep> stepsFor(const Piece &piece, Hands hands)
{
    std::vector<FollowedStep> steps;
    int bar = 0;
    for (const Step &step : stepsOf(piece, hands, 0, piece.length + 1))
        steps.push_back({step.at, step.pitches, std::exchange(bar, step.bar) != step.bar});
    return steps;
}

/// A player: goes through the piece, with one skip of two bars and one repetition of two bars.
std::vector<Played> play(const std::vector<FollowedStep> &steps, std::minstd_rand &random)
{
    std::uniform_real_distribution<double> chance(0, 1);
    std::normal_distribution<double> off(0, jitter);
    std::vector<std::size_t> bars;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (i == 0 || steps[i].opensBar)
            bars.push_back(i);
    }
    const std::size_t skipAt = bars[bars.size() / 3];
    const std::size_t repeatAt = bars[2 * bars.size() / 3];
    const double phase = chance(random) * 6.28;
    std::vector<Played> played;
    double now = 10;
    bool jumped = false;
    bool repeated = false;
    for (std::size_t i = 0; i < steps.size();) {
        const double pace = std::exp(std::log(1 + drift) * std::sin(steps[i].at / 12 + phase));
        for (const int pitch : steps[i].pitches) {
            const double dice = chance(random);
            if (dice < leftOut)
                continue;
            const int wrong = dice < leftOut + wrongKeys ? (chance(random) < 0.5 ? -1 : 2) : 0;
            played.push_back({now + off(random), pitch + wrong, static_cast<int>(i), steps[i].at,
                std::exchange(jumped, false), pace});
            if (chance(random) < addedKeys)
                played.push_back({now + 0.1, pitch + 3, -1, steps[i].at, false, pace});
        }
        std::size_t next = i + 1;
        const auto bar = std::ranges::find(bars, next);
        if (next == skipAt && bar + 2 < bars.end()) {
            next = *(bar + 2);
            jumped = true;
        } else if (next == repeatAt && !repeated) {
            next = *(bar - 2);
            repeated = jumped = true;
        }
        const double step = jumped || next >= steps.size() ? 0.5 : steps[next].at - steps[i].at;
        now += step * pace;
        i = next;
    }
    std::ranges::stable_sort(played, {}, &Played::at);
    return played;
}

void follow(const Piece &piece, Hands hands, int seed, Figures &figures)
{
    std::minstd_rand random(static_cast<unsigned>(seed));
    const auto steps = stepsFor(piece, hands);
    if (steps.size() < 12)
        return;
    std::vector<Note> others;
    for (std::size_t i = 0; i < piece.notes.size(); ++i) {
        if (hands == Hands::Right && piece.marks[i].hand == Hands::Left)
            others.push_back(piece.notes[i]);
    }
    AccompanimentPart part(others);
    ScoreFollower follower(steps);
    const auto played = play(steps, random);
    double jumpedAt = -1;
    bool lost = false;
    for (std::size_t i = 0; i < played.size(); ++i) {
        const Played &key = played[i];
        const auto match = follower.press(key.pitch, key.at);
        part.reach(follower, match);
        figures.jumps += key.jumped;
        if (key.jumped) {
            jumpedAt = key.at;
            lost = true;
        }
        const bool right = key.step >= 0 && match.step == static_cast<std::size_t>(key.step);
        if (key.step >= 0) {
            ++figures.keys;
            figures.matched += right;
        }
        if (right && std::exchange(lost, false))
            figures.found.push_back((key.at - jumpedAt) / key.pace / 0.5);
        const double until = i + 1 < played.size() ? played[i + 1].at : key.at + 2;
        // The accompaniment against the line between this key and the next one.
        for (auto due = part.deadline(follower); due && *due < until;
             due = part.deadline(follower)) {
            const double sounds = std::max(*due, key.at);
            for (const Note &note : part.take(follower, sounds)) {
                if (lost || !right)
                    continue;
                const double ideal = key.at + (note.at - key.written) * key.pace;
                figures.late.push_back(sounds - ideal);
            }
        }
    }
}

double share(std::vector<double> values, double part)
{
    if (values.empty())
        return 0;
    std::ranges::sort(values);
    return values[std::min(
        values.size() - 1, static_cast<std::size_t>(part * static_cast<double>(values.size())))];
}

} // namespace

int main()
{
    const Library library{{}};
    Figures all;
    for (std::size_t song = 0; song < library.size(); ++song) {
        const Piece piece = studied(std::get<Piece>(library.load(song)));
        Figures figures;
        for (int seed = 1; seed <= seeds; ++seed) {
            for (const Hands hands : {Hands::Right, Hands::Both})
                follow(piece, hands, seed, figures);
        }
        std::printf("%-40s %6d keys, %.1f %% matched; jumps found within %.1f quarters (9 in 10)\n",
            library.names()[song].title.c_str(), figures.keys,
            100.0 * figures.matched / std::max(1, figures.keys), share(figures.found, 0.9));
        all.keys += figures.keys;
        all.matched += figures.matched;
        all.jumps += figures.jumps;
        for (const double each : figures.found)
            all.found.push_back(each);
        for (const double each : figures.late)
            all.late.push_back(each);
    }
    std::printf(
        "all: %.2f %% of %d keys matched; %zu of %d jumps found, half within %.1f, nine in ten "
        "within %.1f quarters\n",
        100.0 * all.matched / all.keys, all.keys, all.found.size(), all.jumps,
        share(all.found, 0.5), share(all.found, 0.9));
    constexpr double noticed = 0.06;
    const auto over = std::ranges::count_if(all.late, [](double late) { return late > noticed; });
    std::printf(
        "accompaniment, %zu notes: later than the player's time by %.0f ms (median), %.0f ms "
        "(95 in 100), %.0f ms at most, %td by more than 60 ms; sooner by at most %.0f ms\n",
        all.late.size(), 1000 * share(all.late, 0.5), 1000 * share(all.late, 0.95),
        1000 * share(all.late, 1), over, -1000 * share(all.late, 0));
    return 0;
}
