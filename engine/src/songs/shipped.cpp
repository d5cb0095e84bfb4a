#include "songs/shipped.h"

#include <array>
#include <string_view>

namespace kelo::engine {

namespace {

Sheet auClairDeLaLune()
{
    const std::string verse = "c4/4 c4 c4 d4 | e4/2 d4 | c4/4 e4 d4 d4 | c4/1 |\n";
    const std::string ground = "c3/1 | c3/2 g2 | c3/2 g2 | c3/1 |\n";
    return {"Au clair de la lune", "French folk song", 4, 4, 104, 0, Spelling::Sharps,
        {verse + verse
            + "d4/4 d4 d4 d4 | a3/2 a3 | d4/4 c4 b3 a3 | g3/1 |\n"
              "c4/4 c4 c4 d4 | e4/2 d4 | c4/4 e4 d4 d4 | c4/1"},
        {ground + ground
            + "g2/1 | d3/1 | g2/2 d3 | g2/1 |\n"
              "c3/1 | c3/2 g2 | c3/2 g2 | c3/1"}};
}

Sheet odeToJoy()
{
    const std::string line = "e4/4 e4 f4 g4 | g4 f4 e4 d4 | c4 c4 d4 e4 |";
    const std::string ground = "c3/1 | g2/1 | c3/1 |";
    return {"Ode to Joy", "Ludwig van Beethoven", 4, 4, 112, 0, Spelling::Sharps,
        {line + " e4/4. d4/8 d4/2 |\n" + line
            + " d4/4. c4/8 c4/2 |\n"
              "d4/4 d4 e4 c4 | d4 e4/8 f4 e4/4 c4 | d4 e4/8 f4 e4/4 d4 | c4 d4 g3/2 |\n"
            + line + " d4/4. c4/8 c4/2"},
        {ground + " c3/2 g2 |\n" + ground
            + " g2/2 c3 |\n"
              "g2/2 c3 | g2 c3 | g2 c3/4 g2 | a2 d3 g2/2 |\n"
            + ground + " g2/2 c3"}};
}

Sheet twinkleTwinkle()
{
    const std::string theme = "c5/4 c5 | g5 g5 | a5 a5 | g5/2 | f5/4 f5 | e5 e5 | d5 d5 | c5/2";
    const std::string bass = "c3/4 c4 | e4 c4 | f4 c4 | e4 c4 | d4 b3 | c4 a3 | f3 g3 | c3/2";
    const std::string middle = "g5/4 g5 | f5 f5 | e5 e5 | d5/2 |\n";
    const std::string middleBass = "e4/4 g3 | d4 g3 | c4 g3 | b3 g3 |\n";
    return {"Twinkle, Twinkle, Little Star", "French folk song", 2, 4, 100, 0, Spelling::Sharps,
        {theme + " |\n" + middle + middle + theme},
        {bass + " |\n" + middleBass + middleBass + bass}};
}

Sheet greensleeves()
{
    const std::string opening = "c5/4 d5/8 e5/8. f5/16 e5/8 | d5/4 b4/8 g4/8. a4/16 b4/8 |";
    const std::string turn = " c5/4 a4/8 a4/8. g#4/16 a4/8 | b4/4 g#4/8";
    const std::string close = " c5/8. b4/16 a4/8 g#4/8. f#4/16 g#4/8 |";
    const std::string refrain = "g5/4. g5/8. f#5/16 e5/8 | d5/4 b4/8 g4/8. a4/16 b4/8 |";
    return {"Greensleeves", "English folk song", 6, 8, 66, 2, Spelling::Sharps,
        {"a4/8 |\n" + opening + turn + " e4/4 a4/8 |\n" + opening + close + " a4/2. |\n" + refrain
            + turn + " e4/4. |\n" + refrain + close + " a4/2."},
        {"r/8 |\n"
         "a2+e3/2. | g2+d3 | a2+e3 | e2+b2 |\n"
         "a2+e3 | g2+d3 | a2+e3/4. e2+b2 | a2+e3/2. |\n"
         "c3+g3 | g2+d3 | a2+e3 | e2+b2 |\n"
         "c3+g3 | g2+d3 | a2+e3/4. e2+b2 | a2+e3/2."}};
}

Sheet minuetInG()
{
    return {"Minuet in G", "Christian Petzold", 3, 4, 112, 0, Spelling::Sharps,
        {"d5/4 g4/8 a4 b4 c5 | d5/4 g4 g4 | e5 c5/8 d5 e5 f#5 | g5/4 g4 g4 |\n"
         "c5 d5/8 c5 b4 a4 | b4/4 c5/8 b4 a4 g4 | f#4/4 g4/8 a4 b4 g4 | a4/2. |\n"
         "d5/4 g4/8 a4 b4 c5 | d5/4 g4 g4 | e5 c5/8 d5 e5 f#5 | g5/4 g4 g4 |\n"
         "c5 d5/8 c5 b4 a4 | b4/4 c5/8 b4 a4 g4 | a4/4 b4/8 a4 g4 f#4 | g4/2. |\n"
         "b5/4 g5/8 a5 b5 g5 | a5/4 d5/8 e5 f#5 d5 | g5/4 e5/8 f#5 g5 d5 | c#5/4 b4/8 c#5 a4/4 |\n"
         "a4/8 b4 c#5 d5 e5 f#5 | g5/4 f#5 e5 | f#5 a4 c#5 | d5/2. |\n"
         "d5/4 g4/8 f#4 g4/4 | e5 g4/8 f#4 g4/4 | d5 c5 b4 | a4/8 g4 f#4 g4 a4/4 |\n"
         "d4/8 e4 f#4 g4 a4 b4 | c5/4 b4 a4 | b4/8 d5 g4/4 f#4 | b3+d4+g4/2."},
        {"g3+b3+d4/2 a3/4 | b3/2. | c4 | b3 |\n"
         "a3 | g3 | d4/4 b3 g3 | d4 d3/8 c4 b3 a3 |\n"
         "b3/2 a3/4 | g3 b3 g3 | c4/2. | b3/4 c4/8 b3 a3 g3 |\n"
         "a3/2 f#3/4 | g3/2 b3/4 | c4 d4 d3 | g3/2 g2/4 |\n"
         "g3/2. | f#3 | e3/4 g3 e3 | a3/2 a2/4 |\n"
         "a3/2. | b3/4 d4 c#4 | d4 f#3 a3 | d4 d3 c4 |\n"
         "b3 d4 b3 | c4 e4 c4 | b3 a3 g3 | d4/2 r/4 |\n"
         "d3/2. | e3/4 g3 f#3 | g3 b2 d3 | g3 d3 g2"}};
}

Sheet furElise()
{
    const std::string call = "e5/16 d#5 e5 b4 d5 c5 | a4/8 r/16 c4 e4 a4 | b4/8 r/16 e4";
    const std::string answer = "r/4. | a2/16 e3 a3 r r/8 | e2/16 e3 g#3 r r/8 |";
    return {"Für Elise, the opening", "Ludwig van Beethoven", 3, 8, 66, 2, Spelling::Sharps,
        {"e5/16 d#5 |\n" + call + " g#4 b4 | c5/8 r/16 e4 e5 d#5 |\n" + call + " c5 b4 | a4/4."},
        {"r/8 |\n" + answer + " a2/16 e3 a3 r r/8 |\n" + answer + " a2/16 e3 a3/4"}};
}

Sheet gymnopedie()
{
    std::string bass;
    std::string chords;
    for (int bar = 0; bar < 12; ++bar) {
        const std::string end = bar < 11 ? " | " : "";
        bass += (bar % 2 == 0 ? "g2/2." : "d2/2.") + end;
        chords += (bar % 2 == 0 ? "r/4 b3+d4+f#4/2" : "r/4 a3+c#4+f#4/2") + end;
    }
    return {"Gymnopédie number 1, the opening", "Erik Satie", 3, 4, 72, 0, Spelling::Sharps,
        {"r/2. | r | r | r |\n"
         "r/4 f#5 a5 | g5 f#5 c#5 | b4 c#5 d5 | a4/2. |\n"
         "f#4~ | f#4~ | f#4~ | f#4"},
        {bass, chords}};
}

/// Nearly every bar breaks one chord of five notes upwards, twice: the left hand holds two.
Sheet preludeInC()
{
    constexpr std::array<std::array<std::string_view, 5>, 32> chords{{
        {"c4", "e4", "g4", "c5", "e5"},
        {"c4", "d4", "a4", "d5", "f5"},
        {"b3", "d4", "g4", "d5", "f5"},
        {"c4", "e4", "g4", "c5", "e5"},
        {"c4", "e4", "a4", "e5", "a5"},
        {"c4", "d4", "f#4", "a4", "d5"},
        {"b3", "d4", "g4", "d5", "g5"},
        {"b3", "c4", "e4", "g4", "c5"},
        {"a3", "c4", "e4", "g4", "c5"},
        {"d3", "a3", "d4", "f#4", "c5"},
        {"g3", "b3", "d4", "g4", "b4"},
        {"g3", "bb3", "e4", "g4", "c#5"},
        {"f3", "a3", "d4", "a4", "d5"},
        {"f3", "ab3", "d4", "f4", "b4"},
        {"e3", "g3", "c4", "g4", "c5"},
        {"e3", "f3", "a3", "c4", "f4"},
        {"d3", "f3", "a3", "c4", "f4"},
        {"g2", "d3", "g3", "b3", "f4"},
        {"c3", "e3", "g3", "c4", "e4"},
        {"c3", "g3", "bb3", "c4", "e4"},
        {"f2", "f3", "a3", "c4", "e4"},
        {"f#2", "c3", "a3", "c4", "eb4"},
        {"ab2", "f3", "b3", "c4", "d4"},
        {"g2", "f3", "g3", "b3", "d4"},
        {"g2", "e3", "g3", "c4", "e4"},
        {"g2", "d3", "g3", "c4", "f4"},
        {"g2", "d3", "g3", "b3", "f4"},
        {"g2", "eb3", "a3", "c4", "f#4"},
        {"g2", "e3", "g3", "c4", "g4"},
        {"g2", "d3", "g3", "c4", "f4"},
        {"g2", "d3", "g3", "b3", "f4"},
        {"c2", "c3", "g3", "bb3", "e4"},
    }};
    std::string right;
    std::string tenor;
    std::string bass;
    for (const auto &[first, second, third, fourth, fifth] : chords) {
        for (int half = 0; half < 2; ++half) {
            bass.append(first).append("/2 ");
            tenor.append("r/16 ").append(second).append("/8.~ ").append(second).append("/4 ");
            right.append("r/8 ").append(third).append("/16 ").append(fourth).append(" ");
            right.append(fifth).append(" ").append(third).append(" ");
            right.append(fourth).append(" ").append(fifth).append(" ");
        }
        bass += "|\n";
        tenor += "|\n";
        right += "|\n";
    }
    right += "r/8 f3/16 a3 c4 f4 c4 a3 c4 a3 f3 a3 f3 d3 f3 d3 |\n"
             "r/8 g4/16 b4 d5 f5 d5 b4 d5 b4 g4 b4 d4 f4 e4 d4 |\n"
             "e4+g4+c5/1";
    tenor += "r/16 c3/8.~ c3/4~ c3/2 | r/16 b2/8.~ b2/4~ b2/2 | c3/1";
    bass += "c2/1 | c2 | c2";
    return {"Prelude in C", "Johann Sebastian Bach", 4, 4, 69, 0, Spelling::Mixed, {right},
        {bass, tenor}};
}

} // namespace

const std::vector<Sheet> &shippedSongs()
{
    static const std::vector<Sheet> songs{auClairDeLaLune(), odeToJoy(), twinkleTwinkle(),
        greensleeves(), minuetInG(), furElise(), gymnopedie(), preludeInC()};
    return songs;
}

} // namespace kelo::engine
