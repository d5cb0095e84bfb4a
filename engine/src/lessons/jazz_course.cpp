#include "lessons/jazz_course.h"

#include "songs/notation.h"

#include <string>

namespace kelo::engine {

namespace {

constexpr std::array<JazzLesson, jazzLessonCount> lessons{{
    {"Shell voicings",
        "A chord is known by its third and its seventh. With the root below them that is a shell.",
        "c3+e3+b3/2 f3+a3+e4 | d3+f3+c4 g2+f3+b3", "C F Dm7 G7"},
    {"Two, five, one",
        "The two chord wants the five, the five wants home. Only one note at a time has to move.",
        "d3+f3+c4/1 | g2+f3+b3 | c3+e3+b3", "Dm7 G7 C C"},
    {"Blues in F",
        "Twelve bars with three chords, each of them with a minor seventh. Begin with their "
        "shells.",
        "c3+e3+bb3/2 f3+a3+eb4 | c3+e3+bb3 g2+f3+b3", "F7 Bb7 F7 F7 Bb7 Bb7 F7 F7 C7 Bb7 F7 C7"},
    {"Comping",
        "Play few chords and short ones, off the beat: the place is worth more than the notes.",
        "r/4. e3+b3/8 r/2 | r/4. f3+b3/8 r/2", "Dm7 G7 C C"},
    {"Guide tones",
        "Lead thirds and sevenths down by steps: the seventh of one chord becomes the third of the "
        "next.",
        "f4+c5/2 f4+b4 | e4+b4/1", "Dm7 G7 C C"},
    {"Walking bass", "A note on every beat: root, steps, and a note next to where you are going.",
        "d2/4 e2 f2 f#2 | g2 a2 b2 c#3 | c3 b2 a2 g2", "Dm7 G7 C C"},
    {"Rootless voicings",
        "Leave the root to the bass. Third, fifth, seventh and ninth lie well under one hand.",
        "f3+a3+c4+e4/1 | f3+a3+b3+e4 | e3+g3+b3+d4", "Dm7 G7 C C"},
    {"Rhythm changes", "One, six, two, five: four chords that carry hundreds of tunes.",
        "c3+e3+b3/2 a2+g3+c4 | d3+f3+c4 g2+f3+b3", "C Am7 Dm7 G7"},
    {"Turnarounds",
        "The last two bars lead back to the first. A dominant on the sixth makes them stronger.",
        "e3+g3+d4/2 a2+g3+c#4 | d3+f3+c4 g2+f3+b3", "Em7 A7 Dm7 G7"},
    {"Tritone substitution",
        "Put the dominant a tritone away: it shares third and seventh, and the bass slides down.",
        "d3+f3+c4/1 | db3+f3+b3 | c3+e3+b3", "Dm7 Db7 C C"},
    {"Bebop scale",
        "A passing note between the root and the seventh, and chord notes fall on the beats.",
        "c5/8 b4 bb4 a4 g4 f4 e4 d4 | c4/1", "C7 C7 F7 C7"},
    {"Blues phrases",
        "The flat third leans on the third, the flat fifth on the fifth. Leave room after a "
        "phrase.",
        "eb4/8 e4 g4 a4 c5/4 r | f#4/8 g4 bb4 g4 c4/2", "C7 F7 C7 G7"},
    {"A tune put together",
        "Shells in the left hand, a melody of guide tones above: play the whole of two, five, one.",
        "d3+f3+c4+a4/2 g2+f3+b3+g4 | c3+e3+b3+e4/1", "Dm7 G7 C Am7 Dm7 G7 C C"},
}};

} // namespace

const JazzLesson &jazzLesson(std::size_t number)
{
    return lessons[number];
}

Piece jazzExample(const JazzLesson &lesson, int semitones)
{
    Piece piece = readSheet({.title = "",
                                .composer = "",
                                .tempo = 96,
                                .spelling = Spelling::Mixed,
                                .right = {std::string(lesson.notes)}})
                      .value_or(Piece{});
    for (Note &note : piece.notes)
        note.transpose(semitones);
    return piece;
}

} // namespace kelo::engine
