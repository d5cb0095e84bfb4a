#include "written/transcript.h"

#include "theory/tonality.h"
#include "written/hand_division.h"
#include "written/note_value.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double barWithoutMetre = 2; ///< seconds
constexpr double shortestBar = 1e-3; ///< seconds; what is shorter is no music
constexpr int latest = 1 << 29; ///< parts of a quarter: more than ten hours
constexpr double gapsClosed =
    0.65; ///< of the way to the next note: it was meant to last until then

/// Parts of a quarter where notes begin.
constexpr std::array<int, 13> grid{0, writtenQuarter / 8, writtenQuarter / 6, writtenQuarter / 4,
    writtenQuarter / 3, writtenQuarter * 3 / 8, writtenQuarter / 2, writtenQuarter * 5 / 8,
    writtenQuarter * 2 / 3, writtenQuarter * 3 / 4, writtenQuarter * 5 / 6, writtenQuarter * 7 / 8,
    writtenQuarter};

int nearestOnGrid(double ticks)
{
    const double place = std::clamp<double>(ticks, -latest, latest);
    const int quarter = static_cast<int>(std::floor(place / writtenQuarter)) * writtenQuarter;
    const double rest = place - quarter;
    return quarter
        + *std::ranges::min_element(grid, {}, [rest](int each) { return std::abs(each - rest); });
}

/// The bars of a piece, in seconds and as they are written.
class Bars {
public:
    explicit Bars(const Piece &piece)
    {
        starts_ = piece.bars;
        if (starts_.empty()) {
            for (double at = 0; at < piece.length; at += barWithoutMetre)
                starts_.push_back(at);
        }
        if (starts_.empty())
            starts_.push_back(0);
        const Tonality key = tonalityOf(piece.notes);
        const int full = piece.beats * writtenQuarter * 4 / piece.unit;
        int at = 0;
        double usual = 0; // seconds of a full bar, those of the first one may hold an upbeat
        if (starts_.size() > 2)
            usual = starts_[2] - starts_[1];
        for (std::size_t i = 0; i < starts_.size(); ++i) {
            WrittenBar bar;
            bar.at = at;
            bar.length = full;
            const double length = i + 1 < starts_.size() ? starts_[i + 1] - starts_[i] : usual;
            if (i == 0 && usual > 0 && length > usual * 1.05 && length < usual * 2) {
                bar.upbeat = nearestOnGrid((length / usual - 1) * full);
                bar.length += bar.upbeat;
            }
            bar.number =
                i < piece.barNumbers.size() ? piece.barNumbers[i] : static_cast<int>(i) + 1;
            bar.beats = piece.beats;
            bar.unit = piece.unit;
            bar.fifths = sharpsOf(key);
            bar.minor = key.minor;
            at = std::min(latest, at + bar.length);
            written_.push_back(bar);
        }
        last_ = usual > 0 ? usual : std::max(barWithoutMetre, piece.length - starts_.back());
    }

    [[nodiscard]] std::size_t barAt(double time) const
    {
        constexpr double early = 0.03; // a downbeat that is played a little soon is one
        const auto next = std::ranges::upper_bound(starts_, time + early);
        return static_cast<std::size_t>(std::max<std::ptrdiff_t>(next - starts_.begin(), 1) - 1);
    }

    /// Where a time stands, in parts of a quarter; not yet on the grid.
    [[nodiscard]] double placeOf(double time) const
    {
        const std::size_t bar = barAt(time);
        const double length = bar + 1 < starts_.size() ? starts_[bar + 1] - starts_[bar] : last_;
        const double share = (time - starts_[bar]) / std::max(length, shortestBar);
        return written_[bar].at + share * written_[bar].length;
    }

    [[nodiscard]] std::vector<WrittenBar> take() { return std::move(written_); }

private:
    std::vector<double> starts_;
    std::vector<WrittenBar> written_;
    double last_ = 1; ///< seconds of the last bar
};

/// Gives each note the length that it was probably meant to have: to the next one of its hand, or
/// the nearest written value.
void giveLengths(std::vector<WrittenNote> &notes, const std::vector<double> &played)
{
    std::array<int, 3> next{-1, -1, -1}; // of each hand, where the next notes begin
    std::array<int, 3> here{-1, -1, -1};
    for (std::size_t i = notes.size(); i-- > 0;) {
        WrittenNote &note = notes[i];
        const auto hand = static_cast<std::size_t>(note.hand);
        if (here[hand] != note.at) {
            next[hand] = here[hand];
            here[hand] = note.at;
        }
        const int gap = next[hand] < 0 ? 0 : next[hand] - note.at;
        const bool fills = gap > 0 && played[i] > gap * gapsClosed && played[i] < gap * 1.1;
        note.length = fills ? gap : nearestValue(played[i]);
        const NoteValue value = valueOf(note.length);
        note.value = static_cast<std::int16_t>(value.value);
        note.dots = static_cast<std::int8_t>(value.dots);
    }
}

} // namespace

std::shared_ptr<const WrittenPiece> writtenOf(const Piece &piece)
{
    if (piece.written)
        return piece.written;
    auto written = std::make_shared<WrittenPiece>();
    Bars bars(piece);
    const std::vector<Hands> hands = handsOf(piece);
    std::vector<std::pair<WrittenNote, double>> notes;
    for (std::size_t i = 0; i < piece.notes.size(); ++i) {
        const Note &played = piece.notes[i];
        const double from = bars.placeOf(played.at);
        WrittenNote note;
        note.at = nearestOnGrid(from);
        note.hand = hands[i];
        note.staff = static_cast<std::int8_t>(hands[i] == Hands::Left ? 1 : 0);
        note.voice = note.staff + 1;
        note.velocity = static_cast<std::uint8_t>(played.velocity);
        note.pitch = static_cast<std::int16_t>(played.pitch);
        const auto [step, alter] = spelt(played.pitch, piece.spelling);
        note.step = static_cast<std::int8_t>(step);
        note.alter = static_cast<std::int8_t>(alter);
        notes.emplace_back(note, bars.placeOf(played.at + played.duration) - from);
    }
    std::ranges::stable_sort(
        notes, {}, [](const auto &each) { return std::tuple(each.first.at, each.first.pitch); });
    written->bars = bars.take();
    std::vector<double> lengths;
    std::size_t bar = 0;
    for (auto &[note, length] : notes) {
        while (bar + 1 < written->bars.size() && note.at >= written->bars[bar].end())
            ++bar;
        note.bar = static_cast<int>(bar);
        written->notes.push_back(note);
        lengths.push_back(length);
    }
    giveLengths(written->notes, lengths);
    return written;
}

} // namespace kelo::engine
