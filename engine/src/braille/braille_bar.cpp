#include "braille/braille_bar.h"

#include "braille/layers.h"
#include "written/note_value.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr char32_t dotThree = U'⠄';
constexpr int degreesOfOctave = 7;

/// Wholes and sixteenths, halves and so on: each sign has two values (1-1).
std::size_t rowOf(int value)
{
    std::size_t row = 0;
    for (; value > 1; value /= 2)
        ++row;
    return row % 4;
}

char32_t noteCell(int step, int value)
{
    constexpr std::u32string_view eighths = U"⠙⠑⠋⠛⠓⠊⠚";
    constexpr std::array<char32_t, 4> lowerDots{0x24, 0x04, 0x20, 0x00};
    return eighths[static_cast<std::size_t>(step)] | lowerDots[rowOf(value)];
}

char32_t restCell(int value)
{
    constexpr std::u32string_view rests = U"⠍⠥⠧⠭";
    return rests[rowOf(value)];
}

Cells octaveMark(int octave)
{
    constexpr std::array<std::u32string_view, 9> marks{
        U"⠈⠈", U"⠈", U"⠘", U"⠸", U"⠐", U"⠨", U"⠰", U"⠠", U"⠠⠠"};
    return Cells(marks[static_cast<std::size_t>(std::clamp(octave, 0, 8))]);
}

Cells accidental(int alter)
{
    constexpr std::array<std::u32string_view, 5> signs{U"⠣⠣", U"⠣", U"⠡", U"⠩", U"⠩⠩"};
    return Cells(*(signs.begin() + alter + 2));
}

Cells finger(int number)
{
    constexpr std::u32string_view fingers = U"⠁⠃⠇⠂⠅";
    return number > 0 ? Cells(1, fingers[static_cast<std::size_t>(number) - 1]) : Cells();
}

/// A second to an octave, and again from there on (5-3).
char32_t intervalCell(int degrees)
{
    constexpr std::u32string_view intervals = U"⠤⠌⠬⠼⠔⠴⠒";
    return intervals[static_cast<std::size_t>(degrees % degreesOfOctave)];
}

int degreeOf(const WrittenNote &note)
{
    return note.octave() * degreesOfOctave + note.step;
}

int alterInKey(int fifths, int step)
{
    constexpr std::array<int, 7> sharps{3, 0, 4, 1, 5, 2, 6};
    const auto place = std::ranges::find(sharps, step) - sharps.begin();
    if (fifths > 0)
        return place < fifths ? 1 : 0;
    return static_cast<int>(sharps.size()) - 1 - place < -fifths ? -1 : 0;
}

/// Writes one layer of a bar after the other.
class Writer {
public:
    Writer(const WrittenBar &bar, Hands hand, std::optional<int> &last)
        : bar_(bar)
        , hand_(hand)
        , last_(last)
    {
    }

    BrailleBar write(const Layer &layer)
    {
        alters_.clear();
        int at = bar_.at;
        for (const Event &event : layer.events) {
            rest(at, event.at);
            add(event);
            at = std::max(at, event.at + event.length);
        }
        rest(at, bar_.end());
        return std::exchange(signs_, {});
    }

private:
    /// Rests as long as they are written on beats that have room for them.
    void rest(int from, int to)
    {
        while (from < to) {
            const int line = bar_.at + bar_.upbeat;
            const int origin = from < line ? bar_.at : line;
            int length = 4 * writtenQuarter;
            int value = 1;
            while (value < 128 && (length > to - from || (from - origin) % length != 0)) {
                length /= 2;
                value *= 2;
            }
            if (length > to - from)
                return; // shorter than anything that is written
            signs_.push_back({.after = {restCell(value)}});
            upbeat(from, from + length);
            from += length;
        }
    }

    /// Where the upbeat ends a bar line is written.
    void upbeat(int from, int to)
    {
        const int line = bar_.at + bar_.upbeat;
        if (bar_.upbeat > 0 && from < line && to >= line)
            signs_.back().after += emptyCell;
    }

    /// The accidental that a note needs in this bar.
    Cells alteration(const WrittenNote &note)
    {
        const int degree = degreeOf(note);
        const auto known = alters_.find(degree);
        const bool asUsual = known == alters_.end()
            ? alterInKey(bar_.fifths, note.step) == note.alter
            : known->second == note.alter;
        if (note.tiedBefore || asUsual)
            return {};
        alters_[degree] = note.alter;
        return accidental(note.alter);
    }

    /// Seconds and thirds need no octave mark, fourths and fifths in a new octave, larger steps
    /// always.
    bool needsMark(int degree)
    {
        const auto before = std::exchange(last_, degree);
        if (!before)
            return true;
        const int step = std::abs(degree - *before);
        return step > 4 || (step > 2 && degree / degreesOfOctave != *before / degreesOfOctave);
    }

    void add(const Event &event)
    {
        std::vector<const WrittenNote *> notes = event.notes;
        // The right hand's chords are read from above, the left hand's from below (5-1).
        std::ranges::stable_sort(notes, {}, [this](const WrittenNote *note) {
            return hand_ == Hands::Left ? degreeOf(*note) : -degreeOf(*note);
        });
        const WrittenNote &first = *notes.front();
        BrailleSign sign;
        const auto [value, dots] = tuplet(event, first, sign.before);
        if (event.grace)
            sign.before += U"⠢";
        if (first.rolled)
            sign.before += U"⠜⠅";
        if (first.staccato)
            sign.before += U"⠦";
        if (first.trill)
            sign.before += U"⠖";
        sign.before += alteration(first);
        sign.octave = octaveMark(first.octave());
        sign.marked = needsMark(degreeOf(first));
        sign.after += noteCell(first.step, value);
        sign.after.append(static_cast<std::size_t>(dots), dotThree);
        sign.after += finger(first.finger);
        const Cells slur(static_cast<std::size_t>(event.slur), U'⠉');
        if (notes.size() == 1)
            sign.after += slur; // before the tie
        if (first.tiedOn)
            sign.after += U"⠈⠉";
        for (std::size_t i = 1; i < notes.size(); ++i)
            interval(*notes[i], first, *notes[i - 1], sign.after);
        if (notes.size() > 1)
            sign.after += slur;
        signs_.push_back(std::move(sign));
        upbeat(event.at, event.at + event.length);
    }

    void interval(const WrittenNote &note, const WrittenNote &written, const WrittenNote &before,
        Cells &cells)
    {
        if (note.trill)
            cells += U"⠖"; // before each note that it belongs to
        cells += alteration(note);
        const int fromWritten = std::abs(degreeOf(note) - degreeOf(written));
        const int fromBefore = std::abs(degreeOf(note) - degreeOf(before));
        const bool second = &before == &written;
        // Beyond the octave, on the same key, or where two of them are an octave apart (5-3 to
        // 5-5).
        if (second ? fromWritten > degreesOfOctave || fromWritten == 0
                   : fromBefore >= degreesOfOctave || fromBefore == 0)
            cells += octaveMark(note.octave());
        cells += intervalCell(fromWritten);
        cells += finger(note.finger);
        if (note.tiedOn)
            cells += U"⠈⠉";
    }

    /// The value and the dots of an event; the sign of a group of three, five or seven before its
    /// first note.
    std::pair<int, int> tuplet(const Event &event, const WrittenNote &note, Cells &before)
    {
        NoteValue value = valueOf(event.length);
        if (note.value > 0)
            value = {note.value, note.dots, false};
        if (value.value == 0)
            value = {event.grace ? 8 : 4, 0, false};
        int nominal = 4 * writtenQuarter / value.value;
        nominal = value.dots == 1 ? nominal * 3 / 2 : value.dots == 2 ? nominal * 7 / 4 : nominal;
        if (event.grace || nominal == event.length || event.length <= 0)
            return {value.value, value.dots};
        if (event.at >= tupletEnd_) {
            // Three in the time of two, five or seven in that of four.
            const int in = nominal * 2 == event.length * 3 ? 3
                : nominal * 4 == event.length * 5          ? 5
                : nominal * 4 == event.length * 7          ? 7
                                                           : 0;
            if (in == 3)
                before += U"⠆";
            else if (in > 0)
                before += U"⠸" + lowerFigures(in) + dotThree;
            tupletEnd_ = event.at + event.length * std::max(in, 1);
        }
        return {value.value, value.dots};
    }

    const WrittenBar &bar_;
    Hands hand_;
    std::optional<int> &last_; ///< degree of the note that was written last
    std::map<int, std::int8_t> alters_; ///< by degree, in this bar
    int tupletEnd_ = 0;
    BrailleBar signs_;
};

/// What stands before the first note of a bar.
Cells opening(const std::vector<WrittenBar> &bars, std::size_t index)
{
    const WrittenBar &bar = bars[index];
    Cells cells;
    if (index > 0
        && (bars[index - 1].fifths != bar.fifths || bars[index - 1].beats != bar.beats
            || bars[index - 1].unit != bar.unit))
        cells += signatureOf(bar) + emptyCell;
    if (bar.repeatBegins)
        cells += U"⠣⠶";
    if (bar.endings != 0 && (index == 0 || bars[index - 1].endings != bar.endings)) {
        int time = 1;
        while (time < 9 && (bar.endings & (1U << time)) == 0)
            ++time;
        cells += U"⠼" + lowerFigures(time);
    }
    return cells;
}

bool hasLeftDots(const Cells &cells)
{
    return !cells.empty() && (cells.front() & 0x07) != 0;
}

} // namespace

std::vector<BrailleBar> brailleBars(const WrittenPiece &piece, Hands hand)
{
    std::vector<BrailleBar> all;
    std::optional<int> last;
    const auto layers = layersOf(piece, hand);
    for (std::size_t index = 0; index < piece.bars.size(); ++index) {
        const WrittenBar &bar = piece.bars[index];
        const Cells before = opening(piece.bars, index);
        if (!before.empty())
            last.reset();
        BrailleBar signs;
        for (const Layer &layer : layers[index]) {
            if (!signs.empty()) { // the in-accord for whole bars
                signs.push_back({.after = U"⠣⠜"});
                last.reset();
            }
            const BrailleBar more = Writer(bar, hand, last).write(layer);
            signs.insert(signs.end(), more.begin(), more.end());
        }
        if (layers[index].size() > 1)
            last.reset();
        if (signs.empty())
            signs.push_back({.after = U"⠍"}); // whatever the metre (1-7)
        if (!before.empty()) {
            const bool word = before.front() == U'⠼' && before.back() != emptyCell;
            signs.front().before.insert(
                0, before + (word && hasLeftDots(signs.front().before) ? U"⠄" : U""));
        }
        if (bar.repeatEnds > 0)
            signs.back().after += U"⠣⠆";
        else if (index + 1 == piece.bars.size())
            signs.back().after += U"⠣⠅";
        if (bar.repeatEnds > 0)
            last.reset();
        all.push_back(std::move(signs));
    }
    return all;
}

Cells cellsOf(const BrailleBar &bar, bool opensLine)
{
    Cells cells;
    bool opens = opensLine;
    for (const BrailleSign &sign : bar) {
        const bool isNote = !sign.octave.empty();
        cells +=
            sign.before + (sign.marked || (opens && isNote) ? sign.octave : Cells()) + sign.after;
        opens = opens && !isNote;
    }
    return cells;
}

Cells signatureOf(const WrittenBar &bar)
{
    const int count = std::abs(bar.fifths);
    const char32_t sign = bar.fifths > 0 ? U'⠩' : U'⠣';
    Cells cells = count > 3 ? U"⠼" + upperFigures(count) + sign
                            : Cells(static_cast<std::size_t>(count), sign);
    return cells + U"⠼" + upperFigures(bar.beats) + lowerFigures(bar.unit);
}

Cells handSign(Hands hand, const Cells &next)
{
    const Cells sign = hand == Hands::Left ? U"⠸⠜" : U"⠨⠜";
    return sign + (hasLeftDots(next) ? U"⠄" : U"") + next;
}

} // namespace kelo::engine
