#include "lessons/excerpt.h"

#include "listen/words.h"
#include "reading/walk.h"
#include "written/hand_division.h"
#include "written/transcript.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double writtenTogether = 0.04; ///< seconds within which the keys of a chord are written
constexpr std::size_t mostSteps = 16; ///< that are kept in mind
constexpr double barWithoutMetre = 2;
constexpr std::size_t mostBars = 10'000; ///< of what has no metre

/// Bars and beats of a piece.
class Places {
public:
    explicit Places(const Piece &piece)
        : piece_(piece)
    {
        const bool compound = piece.unit >= 8 && piece.beats > 3 && piece.beats % 3 == 0;
        beats_ = compound ? piece.beats / 3 : piece.beats;
        const auto &bars = piece.bars;
        if (bars.size() > 2) {
            usual_ = bars[2] - bars[1];
            const double first = bars[1] - bars[0];
            upbeat_ = first > usual_ * 1.05 ? first - usual_ : 0;
        } else if (bars.size() > 1) {
            usual_ = bars[1] - bars[0];
        }
    }

    void fill(Step &step) const
    {
        const auto &bars = piece_.bars;
        const auto next = std::ranges::upper_bound(bars, step.at + writtenTogether);
        if (next == bars.begin() || usual_ <= 0)
            return;
        const auto index = static_cast<std::size_t>(next - bars.begin()) - 1;
        const double from = bars[index] + (index == 0 ? upbeat_ : 0);
        const double end = index + 1 < bars.size() ? bars[index + 1] : from + usual_;
        const double beat = (end - from) / beats_;
        const double after = (step.at + writtenTogether - from) / beat;
        step.bar = numberOf(index);
        step.beat = after < 0 ? 0 : static_cast<int>(after) + 1;
        step.beatAt = after < 0 ? bars[index] : from + (step.beat - 1) * beat;
    }

    [[nodiscard]] int numberOf(std::size_t index) const
    {
        return index < piece_.barNumbers.size() ? piece_.barNumbers[index]
                                                : static_cast<int>(index) + 1;
    }

private:
    const Piece &piece_;
    int beats_;
    double usual_ = 0; ///< seconds of a bar
    double upbeat_ = 0;
};

std::vector<Step> stepsOf(
    const Piece &piece, const std::vector<Hands> &owners, Hands hands, double from, double to)
{
    std::vector<Step> steps;
    std::vector<int> graces;
    const Places places(piece);
    const auto first = std::ranges::lower_bound(piece.notes, from - writtenTogether, {}, &Note::at);
    for (auto it = first; it != piece.notes.end() && it->at < to - writtenTogether; ++it) {
        const Note &note = *it;
        const Hands owner = owners[static_cast<std::size_t>(it - piece.notes.begin())];
        if (owner == Hands::Both || (hands != Hands::Both && owner != hands))
            continue;
        const NoteMark mark = piece.marks.empty()
            ? NoteMark{}
            : piece.marks[static_cast<std::size_t>(it - piece.notes.begin())];
        if (mark.grace) {
            graces.push_back(note.pitch);
            continue;
        }
        if (steps.empty() || note.at - steps.back().at > writtenTogether) {
            steps.push_back({note.at, {}});
            steps.back().ornaments = std::exchange(graces, {});
            places.fill(steps.back());
        }
        Step &step = steps.back();
        if (mark.trill) {
            for (const int away : {-2, -1, 0, 1, 2})
                step.ornaments.push_back(note.pitch + away);
        }
        const auto place = std::ranges::lower_bound(step.pitches, note.pitch);
        if (place != step.pitches.end() && *place == note.pitch)
            continue;
        step.hands.insert(step.hands.begin() + (place - step.pitches.begin()), owner);
        step.tones.insert(step.tones.begin() + (place - step.pitches.begin()),
            WrittenTouch{note.velocity, note.at + note.duration});
        step.pitches.insert(place, note.pitch);
    }
    return steps;
}

/// Whose the steps are.
Hands handsIn(const std::vector<Step> &steps)
{
    bool right = false;
    bool left = false;
    for (const Step &step : steps) {
        for (const Hands hand : step.hands)
            (hand == Hands::Left ? left : right) = true;
    }
    return right && left ? Hands::Both : left ? Hands::Left : Hands::Right;
}

/// Where phrases begin and end, in seconds and as bars.
class Phrases {
public:
    explicit Phrases(const Piece &piece)
        : piece_(piece)
    {
        starts_ = piece.bars;
        if (starts_.empty())
            starts_.push_back(0);
        while (piece.bars.empty() && starts_.back() + barWithoutMetre < piece.length
            && starts_.size() < mostBars)
            starts_.push_back(starts_.back() + barWithoutMetre);
        if (piece.written && piece.written->bars.size() == starts_.size()) {
            written_ = piece.written;
            return;
        }
        Piece played = piece;
        played.written.reset();
        played.bars = starts_;
        written_ = writtenOf(played);
    }

    /// Each phrase without its steps.
    [[nodiscard]] std::vector<Excerpt> all() const
    {
        std::vector<Excerpt> phrases;
        for (const Stretch &stretch : phrasesOf(*written_, mostSteps))
            phrases.push_back(phrase(stretch));
        if (!phrases.empty()) // the last note may be written a little late
            phrases.back().to = std::max(phrases.back().to, piece_.length) + 1;
        return phrases;
    }

private:
    [[nodiscard]] std::size_t barAt(int at) const
    {
        const auto &bars = written_->bars;
        const auto after = std::ranges::upper_bound(bars, at, {}, &WrittenBar::at);
        return static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - bars.begin() - 1, 0));
    }

    [[nodiscard]] double timeOf(int at) const
    {
        const std::size_t index = barAt(at);
        const WrittenBar &bar = written_->bars[index];
        const auto startOf = [&](std::size_t place) {
            if (place < starts_.size())
                return starts_[place];
            const std::size_t count = starts_.size();
            return starts_.back()
                + (count > 1 ? starts_[count - 1] - starts_[count - 2] : barWithoutMetre);
        };
        const double share = bar.length > 0 ? static_cast<double>(at - bar.at) / bar.length : 0;
        return startOf(index) + share * (startOf(index + 1) - startOf(index));
    }

    /// Less than half a bar at its beginning leads to the next bar, and less than half of one at
    /// its end belongs to the bar before.
    [[nodiscard]] Excerpt phrase(Stretch stretch) const
    {
        std::size_t first = barAt(stretch.from);
        std::size_t last = barAt(stretch.to - 1);
        const auto &bars = written_->bars;
        const auto half = [&](std::size_t bar) { return bars[bar].at + bars[bar].length / 2; };
        const bool upbeat = first < last && stretch.from >= half(first);
        first += upbeat ? 1 : 0;
        last -= last > first && stretch.to <= half(last) ? 1 : 0;
        const int into = upbeat ? 0 : stretch.from - bars[first].at - bars[first].upbeat;
        Excerpt phrase{timeOf(stretch.from), timeOf(stretch.to), bars[first].number,
            bars[last].number, Hands::Both, {}};
        phrase.upbeat = upbeat;
        phrase.written = stretch;
        const int beat = std::max(1, pulseOf(bars[first]));
        if (into >= beat)
            phrase.fromBeat = into / beat + 1;
        return phrase;
    }

    const Piece &piece_;
    std::vector<double> starts_; ///< of the bars; never empty
    std::shared_ptr<const WrittenPiece> written_;
};

} // namespace

std::vector<Step> stepsOf(const Piece &piece, Hands hands, double from, double to)
{
    return stepsOf(piece, handsOf(piece), hands, from, to);
}

std::string placeOf(const std::vector<Step> &steps, std::size_t index)
{
    const Step &step = steps[index];
    if (step.bar == 0)
        return "The " + ordinalInWords(static_cast<int>(index) + 1)
            + (step.pitches.size() > 1 ? " chord" : " note");
    const std::string bar = "Bar " + numberInWords(step.bar);
    return step.beat == 0 ? bar + ", upbeat" : bar + ", beat " + numberInWords(step.beat);
}

std::vector<Excerpt> excerptsOf(const Piece &piece, Hands hands)
{
    if (piece.notes.empty())
        return {};
    const auto owners = handsOf(piece);
    std::vector<Excerpt> all;
    std::vector<std::size_t> phrases; ///< the first part of each
    const auto join = [&](std::size_t count) {
        const Excerpt &first = all[phrases[phrases.size() - count]];
        Excerpt joined = all.back();
        joined.from = first.from;
        joined.firstBar = first.firstBar;
        joined.fromBeat = first.fromBeat;
        joined.upbeat = first.upbeat;
        joined.written.from = first.written.from;
        joined.steps = stepsOf(piece, owners, hands, joined.from, joined.to);
        joined.hands = handsIn(joined.steps);
        joined.joined = true;
        all.push_back(std::move(joined));
    };
    for (const Excerpt &phrase : Phrases(piece).all()) {
        const std::size_t before = all.size();
        for (const Hands whose : {Hands::Right, Hands::Left, Hands::Both}) {
            if (hands != Hands::Both && whose != hands)
                continue;
            auto found = stepsOf(piece, owners, whose, phrase.from, phrase.to);
            if (found.empty() || (whose == Hands::Both && all.size() - before < 2))
                continue; // nothing to play, or nothing to put together
            all.push_back(phrase);
            all.back().hands = whose;
            all.back().steps = std::move(found);
        }
        if (all.size() == before)
            continue;
        phrases.push_back(before);
        for (std::size_t together = 2; phrases.size() % together == 0; together *= 2)
            join(together);
    }
    if (phrases.size() > 1 && all.back().from != all.front().from)
        join(phrases.size());
    return all;
}

Piece pieceOf(const Excerpt &excerpt, const Piece &whole)
{
    const auto owners = handsOf(whole);
    Piece part;
    part.spelling = whole.spelling;
    for (std::size_t i = 0; i < whole.notes.size(); ++i) {
        Note note = whole.notes[i];
        const bool wanted = excerpt.hands == Hands::Both || owners[i] == excerpt.hands;
        if (!wanted || note.at < excerpt.from - writtenTogether
            || note.at >= excerpt.to - writtenTogether || owners[i] == Hands::Both)
            continue;
        note.endAt(std::min(note.at + note.duration, excerpt.to));
        note.at = std::max(0.0, note.at - excerpt.from);
        note.channel = note.track = owners[i] == Hands::Right ? 0 : 1;
        part.notes.push_back(note);
    }
    measureLength(part);
    return part;
}

} // namespace kelo::engine
