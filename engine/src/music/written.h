#pragma once

#include "music/hands.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelo::engine {

/// Places and lengths of written music, in parts of a quarter: note values down to a 128th,
/// triplets, fives and sevens are whole numbers of them.
inline constexpr int writtenQuarter = 10080;

/// A note or a rest as it is written.
struct WrittenNote {
    int at = 0; ///< from the beginning of the piece
    int length = 0; ///< 0 is a grace note
    int bar = 0; ///< its place among the bars
    int voice = 0; ///< of its part
    std::int16_t part = 0;
    std::int16_t pitch = -1; ///< below 0 a rest
    std::int8_t step = 0; ///< 0 is C, 6 is B
    std::int8_t alter = 0; ///< above 0 sharps
    std::int8_t staff = 0; ///< of its part, from 0 on
    std::int8_t finger = 0; ///< 1 to 5; 0 where none is written
    std::int8_t dots = 0;
    std::int16_t value = 0; ///< 1 is a whole note, 4 a quarter; 0 where none is written
    std::uint8_t velocity = 80;
    Hands hand = Hands::Both; ///< whose; Both: no hand's, somebody else plays it
    bool tiedBefore = false; ///< it is not pressed again
    bool tiedOn = false;
    bool slurBegins = false;
    bool slurEnds = false;
    bool rolled = false;
    bool trill = false; ///< or another ornament that repeats its neighbours
    bool staccato = false;
    std::string lyric{};

    [[nodiscard]] bool rest() const { return pitch < 0; }
    /// The octave of its name: B sharp below middle C is in the third.
    [[nodiscard]] int octave() const { return (pitch - alter) / 12 - 1; }
    [[nodiscard]] int end() const { return at + length; }
};

struct WrittenBar {
    int at = 0;
    int length = 0; ///< with the upbeat
    int upbeat = 0; ///< what of it comes before the first beat
    int number = 1; ///< as it is printed
    int beats = 4; ///< of the time signature
    int unit = 4; ///< 4 is a quarter, 8 an eighth
    int fifths = 0; ///< sharps of the key signature, below 0 flats
    bool minor = false;
    bool repeatBegins = false;
    int repeatEnds = 0; ///< how often it is played, 2 for a plain repeat; 0 for none
    std::uint32_t endings = 0; ///< a bit for each time that it is played, from 1 on; 0: always
    bool segno = false;
    bool coda = false;
    bool toCoda = false;
    bool fine = false;
    bool daCapo = false;
    bool dalSegno = false;

    [[nodiscard]] int end() const { return at + length; }
    [[nodiscard]] int beatLength() const { return writtenQuarter * 4 / unit; }
};

/// What is written beside the notes.
struct WrittenSign {
    enum class Kind : std::uint8_t { Dynamics, Words, Chord, Tempo };

    Kind kind = Kind::Words;
    int at = 0;
    int bar = 0; ///< its place among the bars
    std::string text{}; ///< "mf", "Allegro", "C7"
    double tempo = 0; ///< quarters a minute, of a tempo
};

/// A piece as it is written. All lists are in the order of time.
struct WrittenPiece {
    std::string title{};
    std::string composer{};
    std::vector<WrittenBar> bars{};
    std::vector<WrittenNote> notes{}; ///< from low to high where they begin together
    std::vector<WrittenSign> signs{};
};

} // namespace kelo::engine
