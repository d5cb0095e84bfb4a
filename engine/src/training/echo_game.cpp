#include "training/echo_game.h"

#include "listen/words.h"
#include "theory/pitch_names.h"
#include "theory/tonality.h"

#include <algorithm>
#include <array>

namespace kelo::engine {

namespace {

constexpr double noteEvery = 0.55; ///< seconds
constexpr double noteLength = 0.5;
constexpr double lastLength = 0.9;
constexpr int velocity = 84;
constexpr int lowestDegree = 0; ///< middle C
constexpr int highestDegree = 9;
constexpr int tries = 2;

} // namespace

void EchoGame::grow()
{
    static constexpr std::array steps{-1, 1, -1, 1, -2, 2, 0, 4, -3};
    const Tonality key{};
    int degree = melody_.empty() ? 0 : degreeOf(key, melody_.back());
    for (int next = lowestDegree - 1; next < lowestDegree || next > highestDegree;) {
        next = degree
            + steps[std::uniform_int_distribution<std::size_t>(0, steps.size() - 1)(random_)];
        if (next >= lowestDegree && next <= highestDegree)
            degree = next;
    }
    melody_.push_back(pitchOf(key, degree));
    played_ = 0;
    missed_ = 0;
    waiting_ = told_ = false;
}

void EchoGame::renew(std::size_t notes)
{
    melody_.clear();
    while (melody_.size() < std::max(notes, shortest))
        grow();
}

Reply EchoGame::begin()
{
    best_ = 0;
    renew(shortest);
    return {.words = "Echo game. I play, you play it back, and each time it gets a note longer. "
                     "The first note is "
            + pitchName(melody_.front(), Spelling::Mixed) + ".",
        .demo = true};
}

void EchoGame::listen()
{
    played_ = 0;
    waiting_ = true;
}

std::string EchoGame::tally() const
{
    if (best_ == 0)
        return "Nothing played back yet.";
    return "The longest was " + numberInWords(static_cast<int>(best_)) + " notes.";
}

std::string EchoGame::answer() const
{
    std::string text;
    for (const int pitch : melody_)
        text += (text.empty() ? "" : ", ") + pitchName(pitch, Spelling::Mixed);
    return text;
}

Piece EchoGame::demo() const
{
    Piece piece;
    double at = 0;
    for (std::size_t i = 0; i < melody_.size(); ++i, at += noteEvery)
        piece.notes.emplace_back(
            at, i + 1 < melody_.size() ? noteLength : lastLength, melody_[i], velocity, 0, 0);
    measureLength(piece);
    return piece;
}

Reply EchoGame::press(int pitch)
{
    if (!waiting_)
        return {};
    if (played_ == 0)
        shift_ = pitch - melody_.front();
    if (shift_ % 12 != 0 || pitch != melody_[played_] + shift_)
        return wrong();
    return ++played_ == melody_.size() ? right() : Reply{};
}

Reply EchoGame::right()
{
    waiting_ = false;
    if (!told_)
        best_ = std::max(best_, melody_.size());
    if (melody_.size() == longest) {
        renew(shortest);
        return {true, "Sixteen notes: more nobody asks for. We begin anew.", true};
    }
    grow();
    return {true, capitalised(numberInWords(static_cast<int>(melody_.size()))) + ".", true};
}

Reply EchoGame::wrong()
{
    waiting_ = false;
    if (++missed_ < tries)
        return {false, "Listen again.", true};
    Reply reply = skip();
    reply.good = false;
    return reply;
}

Reply EchoGame::skip()
{
    const std::string words = "It was " + answer() + ". " + tally() + " Another one.";
    renew(melody_.size() - std::min<std::size_t>(melody_.size(), 2));
    return {{}, words, true};
}

std::string_view EchoGame::help() const
{
    return "I play a melody, you play it back in any octave, and it grows by a note each time. "
           "Space plays it again, N tells you its notes, right goes on to another. Zero goes home.";
}

} // namespace kelo::engine
