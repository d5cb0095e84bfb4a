#include "written/phrases.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace kelo::engine {

namespace {

/// Where a phrase may begin, and how much speaks for it.
struct Border {
    int at = 0;
    double strength = 0;
    std::size_t before = 0; ///< moments before it at which something begins
};

/// The lowest notes of a piece, one after the other.
class Bass {
public:
    explicit Bass(const WrittenPiece &piece)
    {
        for (const WrittenNote &note : piece.notes) {
            if (note.rest() || note.length == 0)
                continue;
            // From low to high where they begin together; a bass that lasts lies below the others.
            const bool below = !lowest_.empty() && lowest_.back().end > note.at
                && lowest_.back().pitch <= note.pitch;
            if (!below)
                lowest_.push_back({note.at, note.end(), note.pitch});
        }
    }

    /// The bass goes from the fifth degree to the tonic, and a melody rests on a note of its chord:
    /// the end of a sentence.
    [[nodiscard]] bool closes(const WrittenNote &melody, const WrittenBar &bar) const
    {
        const auto next = std::ranges::upper_bound(lowest_, melody.at, {}, &Low::at);
        if (next - lowest_.begin() < 2)
            return false;
        // A note of C major's signature is as many fifths from C as that signature has sharps.
        const int tonic = ((bar.fifths * 7 + (bar.minor ? 9 : 0)) % 12 + 12) % 12;
        const auto degree = [&](int pitch) { return (pitch - tonic + 24) % 12; };
        const int third = bar.minor ? 3 : 4;
        const int above = degree(melody.pitch);
        return degree((next - 1)->pitch) == 0 && degree((next - 2)->pitch) == 7
            && (above == 0 || above == third || above == 7);
    }

private:
    struct Low {
        int at;
        int end;
        int pitch;
    };
    std::vector<Low> lowest_;
};

/// The highest notes of the right hand, or of everything where it has none.
std::vector<const WrittenNote *> melodyOf(const WrittenPiece &piece)
{
    const bool hasRight = std::ranges::any_of(piece.notes,
        [](const WrittenNote &note) { return note.hand == Hands::Right && !note.rest(); });
    std::vector<const WrittenNote *> melody;
    for (const WrittenNote &note : piece.notes) {
        if (note.rest() || note.length == 0 || (hasRight && note.hand != Hands::Right))
            continue;
        if (!melody.empty() && melody.back()->at == note.at)
            melody.back() = &note;
        else
            melody.push_back(&note);
    }
    return melody;
}

/// Where a phrase begins whose melody begins with `note`, after a rest: with the bar or the beat,
/// if the other hand begins it.
int beginningBefore(
    const WrittenPiece &piece, const WrittenBar &bar, int restFrom, const WrittenNote &note)
{
    const bool compound = bar.unit >= 8 && bar.beats > 3 && bar.beats % 3 == 0;
    const int beat = std::max(1, bar.beatLength() * (compound ? 3 : 1));
    const int into = note.at - bar.at - bar.upbeat;
    const auto begins = [&](int at) {
        const auto found = std::ranges::lower_bound(piece.notes, at, {}, &WrittenNote::at);
        return at >= restFrom && found != piece.notes.end() && found->at == at;
    };
    if (into > 0 && into <= bar.length / 2 && begins(bar.at))
        return bar.at;
    const int onBeat = note.at - (into > 0 ? into % beat : 0);
    return begins(onBeat) ? onBeat : note.at;
}

std::vector<Border> bordersOf(const WrittenPiece &piece)
{
    constexpr double restWeight = 1.5;
    constexpr double slurWeight = 0.5;
    constexpr double barWeight = 0.3;
    constexpr double repeatWeight = 4;
    constexpr double cadenceWeight = 0.8;
    constexpr std::size_t around = 4; ///< notes that a length is compared with
    const auto melody = melodyOf(piece);
    const Bass bass(piece);
    std::vector<Border> borders;
    std::size_t bar = 0;
    for (std::size_t i = 0; i < melody.size(); ++i) {
        const WrittenNote &note = *melody[i];
        while (bar + 1 < piece.bars.size() && note.at >= piece.bars[bar].end())
            ++bar;
        Border border{note.at, 0};
        if (i > 0) {
            const WrittenNote &before = *melody[i - 1];
            const bool inBar = before.at >= piece.bars[bar].at || bar == 0;
            border.strength +=
                bass.closes(before, piece.bars[inBar ? bar : bar - 1]) ? cadenceWeight : 0;
            double usual = 0;
            const std::size_t first = i > around ? i - around : 1;
            const std::size_t last = std::min(melody.size() - 1, i + around);
            for (std::size_t j = first; j <= last; ++j)
                usual += melody[j]->at - melody[j - 1]->at;
            usual /= static_cast<double>(last - first + 1);
            const double length = note.at - before.at;
            border.strength += std::log2(std::max(length / std::max(usual, 1.0), 0.25));
            if (note.at > before.end()) {
                border.strength += restWeight;
                border.at = beginningBefore(piece, piece.bars[bar], before.end(), note);
            }
            border.strength += before.slurEnds ? slurWeight : 0;
        }
        const WrittenBar &here = piece.bars[bar];
        const bool first = border.at == here.at;
        border.strength += first ? barWeight : 0;
        if (first && (here.repeatBegins || (bar > 0 && piece.bars[bar - 1].repeatEnds > 0)))
            border.strength += repeatWeight;
        borders.push_back(border);
    }
    return borders;
}

/// Where the melody rests, a phrase may begin with any bar.
void addRests(std::vector<Border> &borders, const WrittenPiece &piece)
{
    std::vector<Border> all;
    auto next = borders.begin();
    for (const WrittenBar &bar : piece.bars) {
        if (next == borders.end() || next->at >= bar.end())
            all.push_back({bar.at, 0});
        for (; next != borders.end() && next->at < bar.end(); ++next)
            all.push_back(*next);
    }
    borders = std::move(all);
}

/// Counts what begins before each of them.
void count(std::vector<Border> &borders, const WrittenPiece &piece)
{
    std::size_t begun = 0;
    auto note = piece.notes.begin();
    for (Border &border : borders) {
        for (int last = -1; note != piece.notes.end() && note->at < border.at; ++note) {
            if (!note->rest())
                begun += std::exchange(last, note->at) != note->at;
        }
        border.before = begun;
    }
}

/// How well a phrase has a usual length: two or four bars. That it begins at all has to be worth
/// it.
double shape(double bars)
{
    constexpr std::array<double, 2> usual{2, 4};
    double off = std::numeric_limits<double>::infinity();
    for (const double each : usual)
        off = std::min(off, std::abs(std::log2(std::max(bars, 0.1) / each)));
    constexpr double beginning = 0.5;
    return -beginning - 2 * off;
}

} // namespace

std::vector<Stretch> phrasesOf(const WrittenPiece &piece, std::size_t most)
{
    if (piece.bars.empty())
        return {};
    constexpr double mostBars = 8;
    constexpr double fewestBars = 0.5;
    const int end = piece.bars.back().end();
    std::vector<Border> borders = bordersOf(piece);
    if (borders.empty())
        return {{0, end}};
    addRests(borders, piece);
    borders.front().at = 0;
    borders.push_back({end, 0});
    count(borders, piece);
    // The best way to each border from one before it.
    struct Way {
        double worth = -std::numeric_limits<double>::infinity();
        std::size_t from = 0;
    };
    std::vector<Way> ways(borders.size());
    ways[0].worth = 0;
    std::size_t first = 0;
    const std::size_t middle = piece.bars.size() / 2;
    const double bar = piece.bars[middle].length;
    for (std::size_t i = 1; i < borders.size(); ++i) {
        while (first + 1 < i
            && (borders[i].at - borders[first].at > mostBars * bar
                || borders[i].before - borders[first].before > most))
            ++first;
        for (std::size_t j = first; j < i; ++j) {
            const double bars = (borders[i].at - borders[j].at) / bar;
            const bool last = i + 1 == borders.size();
            if (bars < fewestBars && !last && j + 1 < i)
                continue;
            const double worth =
                ways[j].worth + borders[i].strength + shape(bars) - (bars < fewestBars ? 10 : 0);
            if (worth > ways[i].worth)
                ways[i] = {worth, j};
        }
    }
    std::vector<Stretch> phrases;
    for (std::size_t i = borders.size() - 1; i > 0; i = ways[i].from)
        phrases.push_back({borders[ways[i].from].at, borders[i].at});
    std::ranges::reverse(phrases);
    return phrases;
}

} // namespace kelo::engine
