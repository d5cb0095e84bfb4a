#include "written/performance.h"

#include "written/hand_division.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t mostPlayedBars = 20000;
constexpr std::size_t mostPlayedNotes = 1'000'000;
constexpr double usualTempo = 100;
constexpr double held = 0.95; ///< of its length, so that repeated notes are two
constexpr double heldStaccato = 0.5;
constexpr double graceSeconds = 0.09;
constexpr std::ptrdiff_t mostGraces = 16; ///< that come before a note
constexpr double accompanimentVelocity = 0.8;

/// Turns places into seconds, by the tempos that are written.
class Tempos {
public:
    explicit Tempos(const WrittenPiece &written)
    {
        turns_.push_back({0, 0, secondsOf(usualTempo)});
        for (const WrittenSign &sign : written.signs) {
            if (sign.kind != WrittenSign::Kind::Tempo)
                continue;
            const double at = timeOf(sign.at);
            turns_.push_back({sign.at, at, secondsOf(sign.tempo)});
        }
    }

    /// Seconds from the beginning, each bar played once.
    [[nodiscard]] double timeOf(int at) const
    {
        const auto next = std::ranges::upper_bound(turns_, at, {}, &Turn::at);
        const Turn &turn = *std::prev(next);
        return turn.time + (at - turn.at) * turn.perTick;
    }

private:
    struct Turn {
        int at;
        double time;
        double perTick;
    };
    static double secondsOf(double tempo) { return 60 / tempo / writtenQuarter; }

    std::vector<Turn> turns_;
};

/// The bar where the repeat that ends in `bar` begins.
std::size_t beginOf(const std::vector<WrittenBar> &bars, std::size_t bar)
{
    for (std::size_t i = bar + 1; i-- > 0;) {
        if (bars[i].repeatBegins || (i < bar && bars[i].repeatEnds > 0))
            return bars[i].repeatBegins ? i : i + 1;
    }
    return 0;
}

std::size_t placeOf(const std::vector<WrittenBar> &bars, bool WrittenBar::*mark, std::size_t or_)
{
    const auto found = std::ranges::find(bars, true, mark);
    return found == bars.end() ? or_ : static_cast<std::size_t>(found - bars.begin());
}

Spelling spellingOf(const WrittenBar &bar)
{
    return bar.fifths > 0 ? Spelling::Sharps : bar.fifths < 0 ? Spelling::Flats : Spelling::Mixed;
}

/// How long the notes of a chain of ties sound, in parts of a quarter, from the first one on.
std::vector<int> tiedLengths(const std::vector<WrittenNote> &notes)
{
    std::vector<int> lengths(notes.size());
    std::vector<std::size_t> open; ///< notes that are tied on, the first of each chain
    std::vector<int> ends(notes.size());
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const WrittenNote &note = notes[i];
        lengths[i] = note.length;
        ends[i] = note.end();
        const auto chain =
            !note.tiedBefore ? open.end() : std::ranges::find_if(open, [&](std::size_t first) {
                return notes[first].pitch == note.pitch && notes[first].part == note.part
                    && ends[first] == note.at;
            });
        if (chain != open.end()) {
            lengths[*chain] += note.length;
            ends[*chain] = note.end();
            lengths[i] = 0;
            if (!note.tiedOn)
                open.erase(chain);
        } else if (note.tiedOn && !note.rest()) {
            constexpr std::size_t mostOpen = 64; // ten fingers; what is never closed is forgotten
            if (open.size() == mostOpen)
                open.erase(open.begin());
            open.push_back(i);
        }
    }
    return lengths;
}

} // namespace

std::vector<int> playedBars(const WrittenPiece &written, Repeats repeats)
{
    const auto &bars = written.bars;
    std::vector<int> order;
    if (repeats == Repeats::Skipped) {
        order.resize(bars.size());
        std::iota(order.begin(), order.end(), 0);
        return order;
    }
    std::vector<int> taken(bars.size()); ///< how often each repeat was taken
    std::uint32_t pass = 1; ///< of the repeat that is under way
    bool jumped = false; ///< da capo or dal segno has been taken
    for (std::size_t bar = 0; bar < bars.size() && order.size() < mostPlayedBars;) {
        const WrittenBar &now = bars[bar];
        if (now.repeatBegins && (order.empty() || order.back() < static_cast<int>(bar)))
            pass = 1;
        if (now.endings != 0 && !jumped && (now.endings >> pass & 1U) == 0) {
            ++bar;
            continue;
        }
        order.push_back(static_cast<int>(bar));
        if (now.repeatEnds > 0 && !jumped) {
            if (++taken[bar] < now.repeatEnds) {
                ++pass;
                bar = beginOf(bars, bar);
                continue;
            }
            pass = 1;
        }
        if (jumped && now.fine)
            break;
        if (jumped && now.toCoda) {
            const std::size_t coda = placeOf(bars, &WrittenBar::coda, bars.size());
            bar = std::max(coda, bar + 1);
            continue;
        }
        if (!jumped && (now.daCapo || now.dalSegno)) {
            jumped = true;
            bar = now.dalSegno ? placeOf(bars, &WrittenBar::segno, 0) : 0;
            continue;
        }
        ++bar;
    }
    return order;
}

Piece performed(std::shared_ptr<const WrittenPiece> written, Repeats repeats)
{
    const auto &bars = written->bars;
    const auto &notes = written->notes;
    const Tempos tempos(*written);
    const std::vector<int> lengths = tiedLengths(notes);
    Piece piece;
    piece.beats = bars.empty() ? 4 : bars.front().beats;
    piece.unit = bars.empty() ? 4 : bars.front().unit;
    piece.spelling = bars.empty() ? Spelling::Mixed : spellingOf(bars.front());
    std::vector<std::pair<Note, NoteMark>> sounding;
    double now = 0;
    for (const int index : playedBars(*written, repeats)) {
        const WrittenBar &bar = bars[static_cast<std::size_t>(index)];
        const double began = tempos.timeOf(bar.at);
        piece.bars.push_back(now);
        piece.barNumbers.push_back(bar.number);
        auto note = std::ranges::lower_bound(notes, bar.at, {}, &WrittenNote::at);
        for (; note != notes.end() && note->at < bar.end(); ++note) {
            const auto place = static_cast<std::size_t>(note - notes.begin());
            if (note->rest() || (lengths[place] == 0 && note->length > 0)
                || sounding.size() == mostPlayedNotes)
                continue;
            const bool grace = note->length == 0;
            // Grace notes come one after the other before what they belong to.
            const auto last = note + std::min(mostGraces, notes.end() - note);
            const auto graces = !grace ? 0 : std::find_if(note, last, [&](const WrittenNote &next) {
                return next.at != note->at || next.length > 0;
            }) - note;
            const double at = std::max(0.0,
                now + tempos.timeOf(note->at) - began - static_cast<double>(graces) * graceSeconds);
            const double length =
                tempos.timeOf(note->at + lengths[place]) - tempos.timeOf(note->at);
            const bool other = note->hand == Hands::Both;
            const int velocity = std::clamp(
                static_cast<int>(note->velocity * (other ? accompanimentVelocity : 1)), 1, 127);
            const int track = other ? 2 + note->part : note->hand == Hands::Right ? 0 : 1;
            sounding.push_back(
                {{at, grace ? graceSeconds : length * (note->staccato ? heldStaccato : held),
                     note->pitch, velocity, track, std::min(track, 8)},
                    {note->hand, note->finger, grace, note->trill, note->rolled}});
        }
        now += tempos.timeOf(bar.end()) - began;
    }
    std::ranges::stable_sort(
        sounding, {}, [](const std::pair<Note, NoteMark> &each) { return each.first.at; });
    for (const auto &[note, mark] : sounding) {
        piece.notes.push_back(note);
        piece.marks.push_back(mark);
    }
    measureLength(piece);
    piece.written = std::move(written);
    return piece;
}

Piece studied(const Piece &piece)
{
    if (piece.written)
        return performed(piece.written, Repeats::Skipped);
    Piece marked = piece;
    if (marked.marks.empty()) {
        for (const Hands hand : handsOf(piece))
            marked.marks.push_back({hand});
    }
    return marked;
}

} // namespace kelo::engine
