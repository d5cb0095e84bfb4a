#include "training/chord_trainer.h"

#include "listen/words.h"
#include "theory/pitch_names.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr int lowestRoot = 53; ///< around middle C chords are clear
constexpr int roots = 12;
constexpr int velocity = 80;
constexpr double noteEvery = 0.7; ///< seconds
constexpr double chordLength = 1.6;
constexpr int tries = 2;
constexpr int rightToClimb = 4;
constexpr int missedToDescend = 2;

/// Semitones above the lowest note, ended by 0.
struct Shape {
    std::array<int, 3> above;
    std::string_view name;
};

constexpr Shape wide[] = {{{4}, ""}, {{7}, ""}, {{12}, ""}, {{5}, ""}};
constexpr Shape all[] = {{{1}, ""}, {{2}, ""}, {{3}, ""}, {{4}, ""}, {{5}, ""}, {{6}, ""},
    {{7}, ""}, {{8}, ""}, {{9}, ""}, {{10}, ""}, {{11}, ""}, {{12}, ""}};
constexpr Shape triads[] = {{{4, 7}, "major"}, {{3, 7}, "minor"}};
constexpr Shape moreTriads[] = {
    {{4, 7}, "major"}, {{3, 7}, "minor"}, {{3, 6}, "diminished"}, {{4, 8}, "augmented"}};
constexpr Shape inversions[] = {{{4, 7}, "major"}, {{3, 7}, "minor"},
    {{3, 8}, "major, first inversion"}, {{4, 9}, "minor, first inversion"},
    {{5, 9}, "major, second inversion"}, {{5, 8}, "minor, second inversion"}};
constexpr Shape sevenths[] = {{{4, 7, 10}, "dominant seventh"}, {{4, 7, 11}, "major seventh"},
    {{3, 7, 10}, "minor seventh"}, {{3, 6, 9}, "diminished seventh"}};

struct Level {
    std::span<const Shape> shapes;
    bool together;
    std::string_view words; ///< said when it is reached
};

constexpr std::array<Level, 7> levels{{
    {wide, false, "Thirds, fourths, fifths and octaves, one note after the other."},
    {all, false, "Now all intervals of the octave."},
    {all, true, "Now both notes together."},
    {triads, true, "Chords of three notes, major or minor."},
    {moreTriads, true, "Now diminished and augmented ones, too."},
    {inversions, true, "Now inversions."},
    {sevenths, true, "Now chords with sevenths."},
}};

constexpr int firstChords = 3; ///< the level

} // namespace

std::string intervalName(int semitones)
{
    static constexpr std::array<std::string_view, 13> names{"the same note", "a minor second",
        "a major second", "a minor third", "a major third", "a fourth", "a tritone", "a fifth",
        "a minor sixth", "a major sixth", "a minor seventh", "a major seventh", "an octave"};
    const int size = std::abs(semitones);
    if (size <= 12)
        return std::string(names[static_cast<std::size_t>(size)]);
    const int octaves = size / 12;
    const std::string far = octaves == 1 ? "an octave" : numberInWords(octaves) + " octaves";
    return size % 12 == 0 ? far
                          : far + " and " + std::string(names[static_cast<std::size_t>(size % 12)]);
}

ChordTrainer::ChordTrainer(std::uint32_t seed, First first)
    : random_(seed)
    , level_(first == First::Chords ? firstChords : 0)
{
}

void ChordTrainer::ask()
{
    const auto before = notes_;
    const auto &shapes = levels[static_cast<std::size_t>(level_)].shapes;
    do {
        which_ = std::uniform_int_distribution<std::size_t>(0, shapes.size() - 1)(random_);
        notes_ = {lowestRoot + std::uniform_int_distribution<int>(0, roots - 1)(random_)};
        for (const int above : shapes[which_].above) {
            if (above > 0)
                notes_.push_back(notes_.front() + above);
        }
    } while (notes_ == before);
    played_.clear();
    triesLeft_ = tries;
    waiting_ = told_ = false;
}

std::string ChordTrainer::lowest() const
{
    return " From " + pitchName(notes_.front(), Spelling::Mixed) + ".";
}

Reply ChordTrainer::begin()
{
    ask();
    const Level &level = levels[static_cast<std::size_t>(level_)];
    return {
        .words = std::string(level.words) + " I say the lowest note, you play them all." + lowest(),
        .demo = true};
}

void ChordTrainer::listen()
{
    played_.clear();
    waiting_ = true;
}

std::string ChordTrainer::tally() const
{
    if (asking_ == 0)
        return "Nothing found yet.";
    return "You found " + numberInWords(found_) + " of " + numberInWords(asking_) + ".";
}

std::string ChordTrainer::answer() const
{
    const Shape &shape = levels[static_cast<std::size_t>(level_)].shapes[which_];
    return (shape.name.empty() ? intervalName(notes_.back() - notes_.front())
                               : std::string(shape.name))
        + ": " + pitchNames(notes_, Spelling::Mixed);
}

Piece ChordTrainer::demo() const
{
    Piece piece;
    const bool together = levels[static_cast<std::size_t>(level_)].together;
    double at = 0;
    for (const int pitch : notes_) {
        piece.notes.emplace_back(at, chordLength, pitch, velocity, 0, 0);
        at += together ? 0 : noteEvery;
    }
    measureLength(piece);
    return piece;
}

/// Each key names a note of it; the lowest of them all has to be the right one.
Reply ChordTrainer::press(int pitch)
{
    if (!waiting_)
        return {};
    const auto same = [](int one, int other) { return (one - other) % 12 == 0; };
    const bool belongs = std::ranges::any_of(notes_, [&](int note) { return same(note, pitch); });
    if (!belongs)
        return wrong();
    if (std::ranges::find(played_, pitch) == played_.end())
        played_.push_back(pitch);
    // An octave has the same name twice, and wants two keys.
    const bool octave = notes_.size() == 2 && same(notes_.front(), notes_.back());
    const bool complete = octave ? played_.size() == 2 : std::ranges::all_of(notes_, [&](int note) {
        return std::ranges::any_of(played_, [&](int key) { return same(note, key); });
    });
    if (!complete)
        return {};
    return same(std::ranges::min(played_), notes_.front()) ? right() : wrong();
}

Reply ChordTrainer::right()
{
    std::string words = "Yes, " + answer() + ".";
    if (!told_) {
        ++asking_;
        ++found_;
        streak_ = std::max(streak_, 0) + (triesLeft_ == tries ? 1 : 0);
    }
    if (streak_ >= rightToClimb && level_ + 1 < static_cast<int>(levels.size())) {
        streak_ = 0;
        words += ' ' + std::string(levels[static_cast<std::size_t>(++level_)].words);
    }
    ask();
    return {true, words + lowest(), true};
}

Reply ChordTrainer::wrong()
{
    waiting_ = false;
    if (--triesLeft_ > 0)
        return {false, "Not quite." + lowest(), true};
    Reply reply = skip();
    reply.good = false;
    return reply;
}

Reply ChordTrainer::skip()
{
    std::string words = "It was " + answer() + ".";
    ++asking_;
    streak_ = std::min(streak_, 0) - 1;
    if (streak_ <= -missedToDescend && level_ > 0 && level_ != firstChords) {
        --level_;
        streak_ = 0;
    }
    ask();
    return {{}, words + lowest(), true};
}

std::string_view ChordTrainer::help() const
{
    return "I name the lowest note and play an interval or a chord; you find all its notes. Space "
           "plays it again, N tells you what it was, right goes on to another. Zero goes home.";
}

} // namespace kelo::engine
