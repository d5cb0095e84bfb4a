// How well a player is followed: pieces that ship, played with wrong, added and left out notes, a
// tempo that drifts by 30 % both ways, and bars that are skipped and repeated. Prints how many keys
// were matched, how soon a jump was found, and how far the accompaniment is from where the player's
// own time would have it.
//
// Two figures have a second one beside them, since nobody could do better in the first one than
// by luck. Where a jump leads to what sounds like what would have come without it, or like another
// bar, and goes on alike, or to a chord whose first key belongs to that as well, no key tells these
// places apart: they count as matched in the second figure, and the time until a jump is found is
// told again from the first key that tells. That key by itself may still be a wrong one.
//
// At last what a key costs in scores of any size.

#include "following/accompaniment_part.h"
#include "following/score_follower.h"
#include "lessons/excerpt.h"
#include "songs/library.h"
#include "written/performance.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <utility>

using namespace kelo::engine;

namespace {

constexpr int choosing = 4000; ///< seeds; those after them say how well the choice holds
constexpr int seeds = 40;
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
    double own; ///< when the player meant it, without the fingers' error
    double pace = 1;
    bool jumped = false; ///< the first one after a jump
    bool wrong = false;
};

/// Where a player jumped: the last step before, and the first one after.
struct Jump {
    std::size_t from;
    std::size_t to;
};

struct Figures {
    int keys = 0;
    int matched = 0;
    int alike = 0; ///< of those that were not, at a place that sounded the same since the jump
    int lost = 0; ///< after a jump, until it was found
    int wrong = 0; ///< wrong keys themselves
    int jumps = 0;
    std::vector<double> found; ///< quarters until a jump was found
    std::vector<double> told; ///< the same from the first key that tells the place from others
    std::vector<double> late; ///< seconds of accompaniment notes, off the player's last key
    std::vector<double> off; ///< the same between keys, off the player's own time
};

std::vector<FollowedStep> stepsFor(const Piece &piece, Hands hands)
{
    std::vector<FollowedStep> steps;
    int bar = 0;
    for (const Step &step : stepsOf(piece, hands, 0, piece.length + 1))
        steps.push_back({step.at, step.pitches, std::exchange(bar, step.bar) != step.bar});
    return steps;
}

/// Seconds of a quarter.
double quarterOf(const Piece &piece)
{
    if (piece.bars.size() < 3)
        return 0.5;
    return (piece.bars[2] - piece.bars[1]) / piece.beats * piece.unit / 4;
}

/// Whether steps from `a` and from `b` on sound the same for so many steps, and the one after them
/// as far as it was heard.
bool sameSound(const std::vector<FollowedStep> &steps, std::size_t a, std::size_t b,
    std::size_t many, const std::vector<int> &heard)
{
    for (std::size_t i = 0; i <= many; ++i) {
        if (std::max(a, b) + i >= steps.size())
            return false;
        const auto &pitches = steps[a + i].pitches;
        const auto &others = steps[b + i].pitches;
        const auto has = [&](int each) { return std::ranges::count(others, each) > 0; };
        if (i < many ? pitches != others : !std::ranges::all_of(heard, has))
            return false;
        const double lengthA = steps[a + i].at - steps[a].at;
        const double lengthB = steps[b + i].at - steps[b].at;
        if (std::abs(lengthA - lengthB) > 0.02)
            return false;
    }
    return true;
}

/// Where a player is, and what was played rightly of that step.
struct Spot {
    std::size_t step = 0;
    std::vector<int> heard{};
};

/// Whether somebody who went on after the jump, or to another bar, would have played the same.
bool couldBe(const std::vector<FollowedStep> &steps, Jump jump, const Spot &spot, std::size_t place)
{
    if (spot.step < jump.to || place + jump.to < spot.step)
        return false;
    const std::size_t many = spot.step - jump.to;
    const std::size_t other = place - many;
    const bool likely = other == jump.from + 1 || other == 0 || steps[other].opensBar;
    return likely && sameSound(steps, jump.to, other, many, spot.heard);
}

/// Whether what was played since the jump tells where it went.
bool tells(const std::vector<FollowedStep> &steps, Jump jump, const Spot &spot)
{
    for (std::size_t other = 0; other < steps.size(); ++other) {
        if (other != spot.step && couldBe(steps, jump, spot, other))
            return false;
    }
    return true;
}

/// A player: goes through the piece, with one skip of two bars and one repetition of two bars.
std::vector<Played> play(
    const std::vector<FollowedStep> &steps, std::minstd_rand &random, std::vector<Jump> &jumps)
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
        const std::size_t before = played.size();
        for (const int pitch : steps[i].pitches) {
            const double dice = chance(random);
            if (dice < leftOut)
                continue;
            const int wrong = dice < leftOut + wrongKeys ? (chance(random) < 0.5 ? -1 : 2) : 0;
            played.push_back({now + off(random), pitch + wrong, static_cast<int>(i), steps[i].at,
                now, pace, false, wrong != 0});
            if (chance(random) < addedKeys)
                played.push_back({now + 0.1, pitch + 3, -1, steps[i].at, now, pace});
        }
        // Of a chord the first key that comes is the one that jumps.
        if (jumped && played.size() > before) {
            jumped = false;
            const auto first = played.begin() + static_cast<std::ptrdiff_t>(before);
            std::ranges::min_element(first, played.end(), {}, [](const Played &key) {
                return key.step < 0 ? 1e9 : key.at;
            })->jumped = true;
        }
        std::size_t next = i + 1;
        const auto bar = std::ranges::find(bars, next);
        bool away = false;
        if (next == skipAt && bar + 2 < bars.end()) {
            next = *(bar + 2);
            away = true;
        } else if (next == repeatAt && !repeated) {
            next = *(bar - 2);
            repeated = away = true;
        }
        if (away)
            jumps.push_back({i, next});
        jumped = jumped || away;
        const double step = away || next >= steps.size() ? 0.5 : steps[next].at - steps[i].at;
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
    std::vector<Jump> jumps;
    const auto played = play(steps, random, jumps);
    const double quarter = quarterOf(piece);
    double jumpedAt = -1;
    double toldAt = -1;
    bool lost = false;
    std::size_t jump = 0; ///< one more than the last one
    Spot spot;
    for (std::size_t i = 0; i < played.size(); ++i) {
        const Played &key = played[i];
        const auto match = follower.press(key.pitch, key.at);
        part.reach(follower, match);
        if (key.jumped) {
            ++figures.jumps;
            ++jump;
            jumpedAt = key.at;
            toldAt = -1;
            lost = true;
        }
        if (key.step >= 0) {
            if (std::exchange(spot.step, static_cast<std::size_t>(key.step)) != spot.step)
                spot.heard.clear();
            if (!key.wrong)
                spot.heard.push_back(key.pitch);
        }
        if (lost && key.step >= 0 && toldAt < 0 && tells(steps, jumps[jump - 1], spot))
            toldAt = key.at;
        const bool right = key.step >= 0 && match.step == spot.step;
        if (key.step >= 0) {
            ++figures.keys;
            figures.matched += right;
            const bool alike =
                !right && jump > 0 && couldBe(steps, jumps[jump - 1], spot, match.step);
            figures.alike += alike;
            figures.lost += !right && !alike && lost;
            figures.wrong += !right && !alike && !lost && key.wrong;
        }
        if (right && std::exchange(lost, false)) {
            figures.found.push_back((key.at - jumpedAt) / key.pace / quarter);
            figures.told.push_back(toldAt < 0 ? 0 : (key.at - toldAt) / key.pace / quarter);
        }
        const double until = i + 1 < played.size() ? played[i + 1].at : key.at + 2;
        // The accompaniment against the line between this key and the next one.
        for (auto due = part.deadline(follower); due && *due < until;
             due = part.deadline(follower)) {
            const double sounds = std::max(*due, key.at);
            for (const Note &note : part.take(follower, sounds)) {
                if (lost || !right)
                    continue;
                const double after = (note.at - key.written) * key.pace;
                figures.late.push_back(sounds - key.at - after);
                if (sounds > key.at)
                    figures.off.push_back(sounds - key.own - after);
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

double percent(int part, int whole)
{
    return 100.0 * part / std::max(1, whole);
}

void tell(const std::string &what, const Figures &figures)
{
    std::printf("%-40s %6d keys, %.1f %% matched, %.1f %% with places that sound the same\n",
        what.c_str(), figures.keys, percent(figures.matched, figures.keys),
        percent(figures.matched + figures.alike, figures.keys));
    std::printf("    others: %d after a jump, %d wrong keys, %d more\n", figures.lost,
        figures.wrong,
        figures.keys - figures.matched - figures.alike - figures.lost - figures.wrong);
    std::printf(
        "    %zu of %d jumps found, nine in ten within %.1f quarters; from the first key that "
        "tells within %.1f, %.1f at most\n",
        figures.found.size(), figures.jumps, share(figures.found, 0.9), share(figures.told, 0.9),
        share(figures.told, 1));
}

void tellTimes(const char *what, const std::vector<double> &late)
{
    constexpr double noticed = 0.06;
    const auto over = std::ranges::count_if(late, [](double each) { return each > noticed; });
    const auto under = std::ranges::count_if(late, [](double each) { return each < -noticed; });
    std::printf(
        "accompaniment %s, %zu notes: later by %.0f ms (median), %.0f ms (95 in 100), %.0f ms "
        "at most, %td by more than 60 ms; sooner by at most %.0f ms, %td by more than 60 ms\n",
        what, late.size(), 1000 * share(late, 0.5), 1000 * share(late, 0.95), 1000 * share(late, 1),
        over, -1000 * share(late, 0), under);
}

void append(std::vector<double> &all, const std::vector<double> &more)
{
    all.insert(all.end(), more.begin(), more.end());
}

void add(Figures &all, const Figures &figures)
{
    all.keys += figures.keys;
    all.matched += figures.matched;
    all.alike += figures.alike;
    all.lost += figures.lost;
    all.wrong += figures.wrong;
    all.jumps += figures.jumps;
    append(all.found, figures.found);
    append(all.told, figures.told);
    append(all.late, figures.late);
    append(all.off, figures.off);
}

void measure(const char *what, int first)
{
    const Library library{{}};
    Figures all;
    std::printf("%s\n", what);
    for (std::size_t song = 0; song < library.size(); ++song) {
        const Piece piece = studied(std::get<Piece>(library.load(song)));
        Figures figures;
        for (int seed = first; seed < first + seeds; ++seed) {
            for (const Hands hands : {Hands::Right, Hands::Both})
                follow(piece, hands, seed, figures);
        }
        tell(library.names()[song].title, figures);
        add(all, figures);
    }
    tell("all", all);
    tellTimes("against the player's last key", all.late);
    tellTimes("between keys, against the player's own time", all.off);
}

/// What a key costs where there is much to look through: a score of so many steps, a part of it
/// played, then another part.
void measureKeys(int size)
{
    std::minstd_rand random(1);
    std::uniform_int_distribution<int> pitch(48, 77);
    std::vector<FollowedStep> steps;
    for (int i = 0; i < size; ++i) {
        steps.push_back({i * 0.25, {pitch(random)}, i % 8 == 0});
        if (i % 4 == 0)
            steps.back().pitches.insert(steps.back().pitches.end(), {36, 43});
    }
    constexpr int played = 400;
    ScoreFollower follower(steps);
    int keys = 0;
    int right = 0;
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < played; ++i) {
        const auto step = static_cast<std::size_t>((i < played / 2 ? i : size / 2 + i) % size);
        for (const int each : steps[step].pitches) {
            ++keys;
            right += follower.press(each, 10 + i * 0.25).step == step;
        }
    }
    const std::chrono::duration<double, std::micro> took =
        std::chrono::steady_clock::now() - before;
    std::printf("a score of %d steps: %.0f microseconds a key, %d of %d keys matched\n", size,
        took.count() / keys, right, keys);
}

} // namespace

int main()
{
    measure("The players that the follower's parameters were chosen on", 1);
    measure("Others", 1 + choosing);
    for (const int size : {200, 2000, 20'000})
        measureKeys(size);
    return 0;
}
