#include "written/hand_division.h"

#include "protocol/text.h"
#include "written/two_hands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
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

/// What is known of whose hand plays what, and what else it may be.
struct Reading {
    std::vector<Hands> hands;
    std::optional<HandsInDoubt> doubt{};
};

class Reader {
public:
    explicit Reader(const Piece &piece)
        : piece_(piece)
        , lines_(linesOf(piece))
    {
    }

    [[nodiscard]] Reading read()
    {
        if (piece_.marks.size() == piece_.notes.size()) {
            Reading known{std::vector(piece_.notes.size(), Hands::Both)};
            std::ranges::transform(piece_.marks, known.hands.begin(), &NoteMark::hand);
            return known;
        }
        if (std::ranges::any_of(
                lines_, [](const auto &line) { return line.second.named != Hands::Both; }))
            return {byTrack([this](int track) { return lines_[track].named; })};
        if (std::ranges::any_of(lines_, [](const auto &line) { return line.second.keyboard; }))
            std::erase_if(lines_, [](const auto &line) { return !line.second.keyboard; });
        if (lines_.size() == 2 || lines_.size() > mostStaves)
            return byTracks();
        return byReach();
    }

private:
    static constexpr std::size_t mostStaves = 4; ///< that one player reads

    [[nodiscard]] std::vector<Hands> byTrack(auto handOfTrack) const
    {
        std::vector<Hands> hands(piece_.notes.size(), Hands::Both);
        for (std::size_t i = 0; i < piece_.notes.size(); ++i) {
            if (piece_.notes[i].channel != drumChannel)
                hands[i] = handOfTrack(piece_.notes[i].track);
        }
        return hands;
    }

    /// The lowest and the highest track; which one that is says little where both lie alike, and
    /// nobody knows whether an ensemble's outer parts are what a pianist would play.
    [[nodiscard]] Reading byTracks()
    {
        constexpr double alike = 4; ///< semitones between tracks of which neither is the lower
        const auto [low, high] = lowestAndHighest(lines_);
        const auto of = [&](int right, int left) {
            return byTrack([=](int track) {
                return track == right ? Hands::Right : track == left ? Hands::Left : Hands::Both;
            });
        };
        Reading reading{of(high, low)};
        if (lines_.size() > mostStaves)
            reading.doubt = {byReach().hands, "the highest part and the lowest one",
                "all parts together, as two hands can reach them"};
        else if (lines_[high].mean() - lines_[low].mean() < alike)
            reading.doubt = {of(low, high), "the higher part is for the right hand",
                "the higher part is for the left hand"};
        return reading;
    }

    [[nodiscard]] Reading byReach()
    {
        Reading reading{std::vector(piece_.notes.size(), Hands::Both)};
        std::vector<const Note *> notes;
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < piece_.notes.size(); ++i) {
            if (lines_.contains(piece_.notes[i].track) && piece_.notes[i].channel != drumChannel) {
                notes.push_back(&piece_.notes[i]);
                places.push_back(i);
            }
        }
        if (notes.empty())
            return reading;
        const auto spread = [&](const std::vector<Hands> &divided) {
            std::vector<Hands> hands = reading.hands;
            for (std::size_t i = 0; i < places.size(); ++i)
                hands[places[i]] = divided[i];
            return hands;
        };
        if (!single(notes)) {
            const Division division = divideBetweenHands(notes);
            auto doubt = doubtIn(division);
            if (doubt)
                doubt->second = spread(doubt->second);
            reading.hands = spread(division.hands);
            reading.doubt = std::move(doubt);
            return reading;
        }
        constexpr double either = 5; ///< semitones around the border where it may be either's
        const double mean = lines_.begin()->second.mean();
        const auto all = [&](Hands hand) { return spread(std::vector(notes.size(), hand)); };
        const bool low = mean < bass;
        reading.hands = all(low ? Hands::Left : Hands::Right);
        if (std::abs(mean - bass) < either)
            reading.doubt = {all(low ? Hands::Right : Hands::Left),
                low ? "for the left hand" : "for the right hand",
                low ? "for the right hand" : "for the left hand"};
        // One line over more keys than lie under a hand may be broken chords of both.
        const auto [bottom, top] =
            std::ranges::minmax_element(notes, {}, [](const Note *note) { return note->pitch; });
        if (!reading.doubt && (*top)->pitch - (*bottom)->pitch > octave * 2)
            reading.doubt = {spread(divideBetweenHands(notes).hands), "all for one hand",
                "shared between the hands"};
        return reading;
    }

    /// What lies between the hands, and costs either of them about as much, may be either's: the
    /// other reading has it all in the hand that has less of it now.
    static std::optional<HandsInDoubt> doubtIn(const Division &division)
    {
        constexpr double hardlyMore = 2; ///< in what hands reach and move
        constexpr double enough = 0.16; ///< of the notes
        constexpr std::size_t few = 6;
        std::size_t doubtful = 0;
        std::size_t left = 0;
        for (std::size_t i = 0; i < division.hands.size(); ++i) {
            const bool doubt = division.margins[i] < hardlyMore;
            doubtful += doubt;
            left += doubt && division.hands[i] == Hands::Left;
        }
        if (doubtful < few
            || static_cast<double>(doubtful) < enough * static_cast<double>(division.hands.size()))
            return {};
        const Hands other = left * 2 > doubtful ? Hands::Right : Hands::Left;
        HandsInDoubt doubt{division.hands, "what lies between the hands is mostly for the left one",
            "it is for the right one"};
        if (other == Hands::Left)
            std::swap(doubt.firstIs, doubt.secondIs);
        for (std::size_t i = 0; i < division.hands.size(); ++i) {
            if (division.margins[i] < hardlyMore)
                doubt.second[i] = other;
        }
        return doubt;
    }

    const Piece &piece_;
    Lines lines_;
};

} // namespace

std::vector<Hands> handsOf(const Piece &piece)
{
    return Reader(piece).read().hands;
}

std::optional<HandsInDoubt> handsInDoubt(const Piece &piece)
{
    return Reader(piece).read().doubt;
}

Piece withReading(const Piece &piece, int reading)
{
    Piece read = piece;
    auto [hands, doubt] = Reader(piece).read();
    if (doubt && reading == 2)
        hands = std::move(doubt->second);
    if (read.marks.empty() && doubt) {
        for (const Hands hand : hands)
            read.marks.push_back({hand});
    }
    return read;
}

} // namespace kelo::engine
