#include "lessons/exercises.h"

#include "listen/words.h"

#include <algorithm>
#include <span>
#include <vector>

namespace kelo::engine {

namespace {

constexpr double eighth = 0.4; ///< seconds
constexpr int velocity = 72;
constexpr int octave = 12;

using Fingers = std::array<int, 8>;

/// By the tonic, from C on.
using Table = std::array<Fingers, octave>;

constexpr Fingers plainRight{1, 2, 3, 1, 2, 3, 4, 5};
constexpr Fingers plainLeft{5, 4, 3, 2, 1, 3, 2, 1};
constexpr Fingers fRight{1, 2, 3, 4, 1, 2, 3, 4};
constexpr Fingers bFlatRight{4, 1, 2, 3, 1, 2, 3, 4};
constexpr Fingers eFlatRight{3, 1, 2, 3, 4, 1, 2, 3};
constexpr Fingers aFlatRight{3, 4, 1, 2, 3, 1, 2, 3};
constexpr Fingers flatsLeft{3, 2, 1, 4, 3, 2, 1, 3};
constexpr Fingers bLeft{4, 3, 2, 1, 4, 3, 2, 1};
constexpr Fingers fSharpLeft{4, 3, 2, 1, 3, 2, 1, 4};

constexpr Table majorRight{plainRight, Fingers{2, 3, 1, 2, 3, 4, 1, 2}, plainRight, eFlatRight,
    plainRight, fRight, Fingers{2, 3, 4, 1, 2, 3, 1, 2}, plainRight, aFlatRight, plainRight,
    bFlatRight, plainRight};
constexpr Table majorLeft{plainLeft, flatsLeft, plainLeft, flatsLeft, plainLeft, plainLeft,
    fSharpLeft, plainLeft, flatsLeft, plainLeft, flatsLeft, bLeft};
constexpr Table minorRight{plainRight, aFlatRight, plainRight, eFlatRight, plainRight, fRight,
    aFlatRight, plainRight, aFlatRight, plainRight, bFlatRight, plainRight};
constexpr Table minorLeft{plainLeft, flatsLeft, plainLeft, Fingers{2, 1, 4, 3, 2, 1, 3, 2},
    plainLeft, plainLeft, fSharpLeft, plainLeft, flatsLeft, plainLeft,
    Fingers{2, 1, 3, 2, 1, 4, 3, 2}, bLeft};

/// Harmonic minor: the leading tone is raised.
int scaleStep(const Tonality &key, int degree)
{
    return semitonesOf(key, degree) + (key.minor && degree % 7 == 6 ? 1 : 0);
}

/// Where a hand begins: both hands an octave apart, in the middle of the keyboard.
int tonicFor(const Tonality &key, Hands hand)
{
    constexpr int lowest = 55; ///< a tonic above it lies well for the right hand
    const int right = lowest + (key.tonic - lowest % octave + octave) % octave;
    return hand == Hands::Left ? right - octave : right;
}

class Exercise {
public:
    explicit Exercise(const Tonality &key) { piece_.spelling = spellingOf(key); }

    void add(double at, double length, int pitch, Hands hand, int finger)
    {
        const int part = hand == Hands::Right ? 0 : 1;
        notes_.push_back({{at, length, pitch, velocity, part, part},
            {.hand = hand, .finger = static_cast<std::int8_t>(finger)}});
    }

    Piece finished(int beatsOfBar)
    {
        std::ranges::stable_sort(notes_, {}, [](const Marked &each) { return each.note.at; });
        for (const Marked &each : notes_) {
            piece_.notes.push_back(each.note);
            piece_.marks.push_back(each.mark);
        }
        measureLength(piece_);
        piece_.beats = beatsOfBar;
        for (double bar = 0; bar < piece_.length - eighth; bar += 2 * eighth * beatsOfBar)
            piece_.bars.push_back(bar);
        return std::move(piece_);
    }

private:
    struct Marked {
        Note note;
        NoteMark mark;
    };

    Piece piece_;
    std::vector<Marked> notes_;
};

constexpr std::array bothHands{Hands::Right, Hands::Left};

bool isBlack(int pitch)
{
    const int note = pitch % octave;
    return note == 1 || note == 3 || note == 6 || note == 8 || note == 10;
}

bool plays(Hands hands, Hands hand)
{
    return hands == Hands::Both || hands == hand;
}

/// Goes up and down again; the last note is held.
Piece upAndDown(const Tonality &key, Hands hands, std::span<const int> degrees, int beats,
    const auto &fingersOf)
{
    Exercise exercise(key);
    const int top = static_cast<int>(degrees.size()) - 1;
    for (const Hands hand : bothHands) {
        if (!plays(hands, hand))
            continue;
        const auto &fingers = fingersOf(hand);
        for (int i = 0; i <= 2 * top; ++i) {
            const auto place = static_cast<std::size_t>(i <= top ? i : 2 * top - i);
            exercise.add(i * eighth, i == 2 * top ? 2 * eighth : eighth,
                tonicFor(key, hand) + scaleStep(key, degrees[place]), hand, fingers[place]);
        }
    }
    return exercise.finished(beats);
}

} // namespace

const std::array<int, 8> &scaleFingers(const Tonality &key, Hands hand)
{
    const Table &table = hand == Hands::Left ? (key.minor ? minorLeft : majorLeft)
                                             : (key.minor ? minorRight : majorRight);
    return table[static_cast<std::size_t>(key.tonic % octave)];
}

Piece scaleOf(const Tonality &key, Hands hands)
{
    static constexpr std::array degrees{0, 1, 2, 3, 4, 5, 6, 7};
    return upAndDown(key, hands, degrees, 4,
        [&](Hands hand) -> const Fingers & { return scaleFingers(key, hand); });
}

Piece arpeggioOf(const Tonality &key, Hands hands)
{
    static constexpr std::array degrees{0, 2, 4, 7};
    const std::array right{1, 2, 3, 5};
    // On a white key the third is the fourth finger's, on a black one the middle finger's.
    const bool black = isBlack(key.tonic + scaleStep(key, 2));
    const std::array left{5, black ? 3 : 4, 2, 1};
    return upAndDown(key, hands, degrees, 3, [&](Hands hand) -> const std::array<int, 4> & {
        return hand == Hands::Left ? left : right;
    });
}

Piece cadenceOf(const Tonality &key, Hands hands)
{
    struct Chord {
        std::array<int, 3> degrees;
        std::array<int, 3> fingers;
        int root;
    };
    static constexpr std::array<Chord, 4> chords{{
        {{0, 2, 4}, {1, 3, 5}, 0},
        {{0, 3, 5}, {1, 3, 5}, 3},
        {{-1, 3, 4}, {1, 4, 5}, 4},
        {{0, 2, 4}, {1, 3, 5}, 0},
    }};
    static constexpr std::array leftFingers{5, 2, 1, 5};
    Exercise exercise(key);
    for (std::size_t i = 0; i < chords.size(); ++i) {
        const double at = static_cast<double>(i) * 4 * eighth;
        for (std::size_t tone = 0; tone < chords[i].degrees.size() && plays(hands, Hands::Right);
             ++tone) {
            const int degree = chords[i].degrees[tone];
            // The leading tone lies a semitone below the tonic, in minor, too.
            const int above = degree < 0 ? -1 : scaleStep(key, degree);
            exercise.add(at, 4 * eighth, tonicFor(key, Hands::Right) + above, Hands::Right,
                chords[i].fingers[tone]);
        }
        if (plays(hands, Hands::Left))
            exercise.add(at, 4 * eighth,
                tonicFor(key, Hands::Left) + scaleStep(key, chords[i].root), Hands::Left,
                leftFingers[i]);
    }
    return exercise.finished(4);
}

Piece patternOf(const Tonality &key, Hands hands, int which)
{
    constexpr int positions = 7; ///< one on each degree of the scale
    constexpr std::size_t notes = 8; ///< of a bar
    using Bar = std::array<int, notes>;
    /// Degrees above the position.
    static constexpr std::array<Bar, fingerPatterns> degrees{{
        {0, 2, 3, 4, 5, 4, 3, 2},
        {0, 2, 5, 4, 3, 4, 3, 2},
        {0, 2, 5, 4, 3, 2, 3, 4},
    }};
    const auto pattern =
        static_cast<std::size_t>((which % fingerPatterns + fingerPatterns) % fingerPatterns);
    Exercise exercise(key);
    for (const Hands hand : bothHands) {
        if (!plays(hands, hand))
            continue;
        const int tonic = tonicFor(key, hand);
        for (int i = 0; i < positions * static_cast<int>(notes); ++i) {
            const int degree = degrees[pattern][static_cast<std::size_t>(i) % notes];
            // A position spans six keys: the outer fingers stretch.
            const int place = degree == 0 ? 0 : degree - 1;
            exercise.add(i * eighth, eighth,
                tonic + scaleStep(key, i / static_cast<int>(notes) + degree), hand,
                hand == Hands::Right ? place + 1 : 5 - place);
        }
        exercise.add(positions * notes * eighth, 2 * eighth, tonic + octave, hand,
            hand == Hands::Right ? 1 : 5);
    }
    return exercise.finished(4);
}

Tonality keyOfDay(std::chrono::local_days day)
{
    const auto count = day.time_since_epoch().count();
    return {static_cast<int>((count * 7 % octave + octave) % octave), count % 3 == 2};
}

namespace {

/// The fingers of the notes that `take` wants, hand by hand.
std::string fingersOf(const Piece &exercise, auto take)
{
    std::string text;
    for (const Hands hand : bothHands) {
        std::string fingers;
        int highest = -1;
        for (std::size_t i = 0; i < exercise.notes.size(); ++i) {
            if (exercise.marks[i].hand != hand || !take(exercise.notes[i], highest))
                continue;
            highest = exercise.notes[i].pitch;
            fingers += (fingers.empty() ? "" : ", ") + numberInWords(exercise.marks[i].finger);
        }
        if (!fingers.empty())
            text += (text.empty() ? "" : " ")
                + std::string(hand == Hands::Right ? "Right hand: " : "Left hand: ") + fingers
                + ".";
    }
    return text;
}

} // namespace

std::string fingersOfBar(const Piece &exercise)
{
    const double end = exercise.bars.size() > 1 ? exercise.bars[1] : exercise.length;
    return fingersOf(exercise, [end](const Note &note, int) { return note.at < end - eighth / 2; });
}

std::string fingersInWords(const Piece &exercise)
{
    return fingersOf(exercise, [](const Note &note, int highest) { return note.pitch > highest; });
}

} // namespace kelo::engine
