#include "written/hand_division.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int drumChannel = 9;
constexpr int lastKeyboardProgram = 7; ///< pianos and their kin in General MIDI
constexpr double writtenTogether = 0.04; ///< seconds within which the keys of a chord are written
constexpr int octave = 12;
constexpr double bass = 50; ///< a single line below it is the left hand's

std::string lowered(std::string text)
{
    std::ranges::transform(text, text.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// The hand that a track is named after; Both for none.
Hands handNamed(const std::string &name)
{
    const std::string text = lowered(name);
    const auto has = [&](std::initializer_list<std::string_view> words) {
        return std::ranges::any_of(
            words, [&](std::string_view word) { return text.find(word) != std::string::npos; });
    };
    const bool right = text == "rh" || has({"right", "r.h.", "treble", "upper", "piano rh"});
    const bool left = text == "lh" || has({"left", "l.h.", "bass clef", "lower", "piano lh"});
    return right == left ? Hands::Both : right ? Hands::Right : Hands::Left;
}

/// Notes of one track on one channel.
struct Line {
    double sum = 0;
    int count = 0;
    Hands named = Hands::Both;
    bool keyboard = true;
    [[nodiscard]] double mean() const { return sum / count; }
};

using Lines = std::map<int, Line>; ///< by track

Lines linesOf(const Piece &piece)
{
    std::array<int, 16> programs{};
    for (auto message = piece.messages.rbegin(); message != piece.messages.rend(); ++message) {
        if (message->message.kind() == 0xc0)
            programs[static_cast<std::size_t>(message->message.channel())] = message->message.first;
    }
    Lines lines;
    for (const Note &note : piece.notes) {
        if (note.channel == drumChannel)
            continue;
        Line &line = lines[note.track];
        if (line.count++ == 0) {
            line.keyboard = programs[static_cast<std::size_t>(note.channel)] <= lastKeyboardProgram;
            const auto track = static_cast<std::size_t>(note.track);
            if (track < piece.trackNames.size())
                line.named = handNamed(piece.trackNames[track]);
        }
        line.sum += note.pitch;
    }
    return lines;
}

/// The tracks with the lowest and the highest notes.
std::pair<int, int> lowestAndHighest(const Lines &lines)
{
    const auto [low, high] =
        std::ranges::minmax_element(lines, {}, [](const auto &line) { return line.second.mean(); });
    return {low->first, high->first};
}

/// Two hands that share what one track has: for each moment it finds how many of the lowest notes
/// are the left hand's. Each way through is judged by what the hands would have to reach and how
/// far they would move, and the cheapest one is taken (Viterbi).
class TwoHands {
public:
    /// `notes` in the order of time; the result is their hands.
    static std::vector<Hands> divide(const std::vector<const Note *> &notes)
    {
        TwoHands hands;
        std::vector<Chord> chords;
        for (std::size_t i = 0; i < notes.size(); ++i) {
            if (chords.empty() || notes[i]->at - chords.back().at > writtenTogether
                || chords.back().notes.size() == mostTogether)
                chords.push_back({notes[i]->at, {}});
            chords.back().notes.emplace_back(notes[i]->pitch, i);
        }
        for (Chord &chord : chords) {
            std::ranges::sort(chord.notes);
            hands.take(chord);
        }
        return hands.best(chords, notes.size());
    }

private:
    static constexpr std::size_t mostTogether = 20;

    struct Chord {
        double at;
        std::vector<std::pair<int, std::size_t>> notes; ///< pitch, and place among all
    };

    /// The best way that gives so many of a chord's notes to the left hand.
    struct Way {
        double cost = 0;
        double left = 48; ///< where the hands lie
        double right = 67;
        std::uint8_t before = 0;
    };

    static double reach(int low, int high, std::size_t count)
    {
        const int span = high - low;
        return (span > octave ? 2.0 * (span - octave) : 0.0)
            + (count > 5 ? 6.0 * static_cast<double>(count - 5) : 0.0);
    }

    void take(const Chord &chord)
    {
        const auto &notes = chord.notes;
        std::vector<Way> now(notes.size() + 1);
        for (std::size_t split = 0; split <= notes.size(); ++split) {
            double held = 0;
            if (split > 0)
                held += reach(notes[0].first, notes[split - 1].first, split);
            if (split < notes.size())
                held += reach(notes[split].first, notes.back().first, notes.size() - split);
            const double left = split > 0 ? middle(notes[0].first, notes[split - 1].first) : 0;
            const double right =
                split < notes.size() ? middle(notes[split].first, notes.back().first) : 0;
            now[split].cost = std::numeric_limits<double>::infinity();
            for (std::size_t i = 0; i < ways_.size(); ++i) {
                const Way &way = ways_[i];
                Way next{way.cost + held, split > 0 ? left : way.left,
                    split < notes.size() ? right : way.right, static_cast<std::uint8_t>(i)};
                next.cost += move(way.left, next.left) + move(way.right, next.right);
                // The right hand lies above the left one, each on its side of the middle.
                next.cost += next.left >= next.right ? 4 : 0;
                next.cost +=
                    0.02 * (std::max(0.0, next.left - 60) + std::max(0.0, 60 - next.right));
                if (next.cost < now[split].cost)
                    now[split] = next;
            }
        }
        ways_ = std::move(now);
        std::vector<std::uint8_t> from(ways_.size());
        std::ranges::transform(ways_, from.begin(), &Way::before);
        before_.push_back(std::move(from));
    }

    static double middle(int low, int high) { return (low + high) / 2.0; }
    static double move(double from, double to)
    {
        const double far = std::abs(to - from);
        return 0.15 * far + (far > octave ? 0.3 * (far - octave) : 0);
    }

    [[nodiscard]] std::vector<Hands> best(const std::vector<Chord> &chords, std::size_t count) const
    {
        std::vector<Hands> hands(count, Hands::Right);
        auto way = static_cast<std::size_t>(
            std::ranges::min_element(ways_, {}, &Way::cost) - ways_.begin());
        for (std::size_t i = chords.size(); i-- > 0; way = before_[i][way]) {
            for (std::size_t note = 0; note < way; ++note)
                hands[chords[i].notes[note].second] = Hands::Left;
        }
        return hands;
    }

    std::vector<Way> ways_{Way{}}; ///< by how many notes of the last chord are the left hand's
    std::vector<std::vector<std::uint8_t>> before_; ///< where each way of each chord comes from
};

/// One line of single notes that one hand can play.
bool single(const std::vector<const Note *> &notes)
{
    constexpr double mostTogether = 0.1; ///< of the notes
    std::size_t chords = 0;
    for (std::size_t i = 1; i < notes.size(); ++i)
        chords += notes[i]->at - notes[i - 1]->at <= writtenTogether;
    if (static_cast<double>(chords) > mostTogether * static_cast<double>(notes.size()))
        return false;
    // Leaps of more than an octave and a half, up and down again, are a bass and a melody.
    constexpr int leap = octave * 3 / 2;
    std::size_t leaps = 0;
    for (std::size_t i = 1; i < notes.size(); ++i)
        leaps += std::abs(notes[i]->pitch - notes[i - 1]->pitch) > leap;
    return leaps * 8 <= notes.size();
}

} // namespace

std::vector<Hands> handsOf(const Piece &piece)
{
    std::vector<Hands> hands(piece.notes.size(), Hands::Both);
    if (piece.marks.size() == piece.notes.size()) {
        std::ranges::transform(piece.marks, hands.begin(), &NoteMark::hand);
        return hands;
    }
    const auto each = [&](auto handOfTrack) {
        for (std::size_t i = 0; i < piece.notes.size(); ++i) {
            if (piece.notes[i].channel != drumChannel)
                hands[i] = handOfTrack(piece.notes[i].track);
        }
        return hands;
    };
    Lines lines = linesOf(piece);
    if (std::ranges::any_of(
            lines, [](const auto &line) { return line.second.named != Hands::Both; }))
        return each([&](int track) { return lines[track].named; });
    if (std::ranges::any_of(lines, [](const auto &line) { return line.second.keyboard; }))
        std::erase_if(lines, [](const auto &line) { return !line.second.keyboard; });
    constexpr std::size_t mostStaves = 4; ///< that one player reads
    if (lines.size() == 2 || lines.size() > mostStaves) {
        const auto [low, high] = lowestAndHighest(lines);
        return each([left = low, right = high](int track) {
            return track == right ? Hands::Right : track == left ? Hands::Left : Hands::Both;
        });
    }
    std::vector<const Note *> notes;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < piece.notes.size(); ++i) {
        if (lines.contains(piece.notes[i].track) && piece.notes[i].channel != drumChannel) {
            notes.push_back(&piece.notes[i]);
            places.push_back(i);
        }
    }
    if (notes.empty())
        return hands;
    const bool low = lines.begin()->second.mean() < bass;
    const std::vector<Hands> divided = single(notes)
        ? std::vector(notes.size(), low ? Hands::Left : Hands::Right)
        : TwoHands::divide(notes);
    for (std::size_t i = 0; i < places.size(); ++i)
        hands[places[i]] = divided[i];
    return hands;
}

} // namespace kelo::engine
