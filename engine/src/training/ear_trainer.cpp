#include "training/ear_trainer.h"

#include "listen/words.h"
#include "theory/pitch_names.h"

#include <algorithm>
#include <iterator>

namespace kelo::engine {

namespace {

constexpr int middleC = 60;
constexpr double noteLength = 0.8;
constexpr double noteEvery = 1.0;
constexpr int tries = 2;
constexpr int rightToClimb = 3;
constexpr int missedToDescend = 2;
constexpr int tallyEvery = 5;

struct Level {
    int highest; ///< semitones above middle C
    bool blackKeys;
    int notes;
    const char *words; ///< said when it is reached
};

constexpr Level levels[] = {
    {7, false, 1, "I play middle C and then another white key. Find that one."},
    {12, false, 1, "Now all white keys of the octave."},
    {12, true, 1, "Now the black keys, too."},
    {7, false, 2, "Now two notes. The first is near middle C. Play both."},
    {12, true, 2, "Now any two notes of the octave."},
};

bool isBlack(int pitch)
{
    return (0b010101001010 >> (pitch % 12) & 1) != 0;
}

} // namespace

void EarTrainer::ask()
{
    const Level &level = levels[currentLevel_];
    const auto before = notes_;
    do {
        notes_.clear();
        while (static_cast<int>(notes_.size()) < level.notes) {
            const int pitch =
                middleC + std::uniform_int_distribution<int>(0, level.highest)(random_);
            const bool usable = level.blackKeys || !isBlack(pitch);
            const bool repeats = !notes_.empty() && notes_.back() == pitch;
            const bool reference = level.notes == 1 && pitch == middleC;
            if (usable && !repeats && !reference)
                notes_.push_back(pitch);
        }
    } while (notes_ == before);
    played_.clear();
    triesLeft_ = tries;
    waiting_ = told_ = false;
}

Reply EarTrainer::begin()
{
    currentLevel_ = 0;
    streak_ = asking_ = found_ = 0;
    ask();
    Reply opening{.words = "Ear training. ", .demo = true};
    opening.words += levels[0].words;
    return opening;
}

void EarTrainer::listen()
{
    played_.clear();
    waiting_ = true;
}

std::string EarTrainer::tally() const
{
    if (asking_ == 0)
        return "Nothing found yet.";
    return "You found " + numberInWords(found_) + " of " + numberInWords(asking_) + ".";
}

std::string EarTrainer::tallyNowAndThen() const
{
    return asking_ % tallyEvery == 0 ? " " + tally() : "";
}

std::string EarTrainer::answer() const
{
    std::string text = pitchName(notes_.front(), Spelling::Mixed);
    for (std::size_t i = 1; i < notes_.size(); ++i)
        text += ", then " + pitchName(notes_[i], Spelling::Mixed);
    return text;
}

Piece EarTrainer::demo() const
{
    Piece piece;
    double at = 0;
    const auto add = [&](int pitch) {
        piece.notes.emplace_back(at, noteLength, pitch, 84, 0, 0);
        at += noteEvery;
    };
    if (notes_.size() == 1)
        add(middleC);
    for (const int pitch : notes_)
        add(pitch);
    measureLength(piece);
    return piece;
}

Reply EarTrainer::press(int pitch)
{
    if (!waiting_)
        return {};
    played_.push_back(pitch);
    const std::size_t count = played_.size();
    const bool starts = (played_.front() - notes_.front()) % 12 == 0;
    const bool fits = starts
        && (count == 1 || played_.back() - played_.front() == notes_[count - 1] - notes_.front());
    if (!fits)
        return wrong();
    return count == notes_.size() ? right() : Reply{};
}

Reply EarTrainer::right()
{
    std::string words = "Yes, " + answer() + ".";
    if (!told_) {
        ++asking_;
        ++found_;
        streak_ = std::max(streak_, 0) + (triesLeft_ == tries ? 1 : 0);
        words += tallyNowAndThen();
    }
    if (streak_ >= rightToClimb && currentLevel_ + 1 < static_cast<int>(std::size(levels))) {
        ++currentLevel_;
        streak_ = 0;
        words += std::string(" ") + levels[currentLevel_].words;
    }
    ask();
    return {true, words, true};
}

Reply EarTrainer::wrong()
{
    const int away = notes_[played_.size() - 1] - played_.back();
    waiting_ = false;
    if (--triesLeft_ > 0)
        return {false, away > 0 ? "It is higher." : "It is lower.", true};
    Reply reply = skip();
    reply.good = false;
    return reply;
}

Reply EarTrainer::skip()
{
    std::string words = "It was " + answer() + ".";
    ++asking_;
    streak_ = std::min(streak_, 0) - 1;
    words += tallyNowAndThen();
    if (streak_ <= -missedToDescend && currentLevel_ > 0) {
        --currentLevel_;
        streak_ = 0;
    }
    ask();
    return {{}, words, true};
}

std::string_view EarTrainer::help() const
{
    return "I play a note, you find it on your piano. Space plays it again, N tells you what it "
           "was, right goes on to another. Zero goes home.";
}

} // namespace kelo::engine
