#pragma once

#include "lessons/attempt.h"
#include "lessons/excerpt.h"

#include <optional>
#include <string>

namespace kelo::engine {

/// What a lesson wants done, in this order: flash, words, then the excerpt played.
struct LessonReply {
    std::optional<bool> good; ///< flash that it was right, or wrong
    std::string words;
    bool demo = false;
    bool over = false; ///< the piece has been learnt
};

/// A lesson on one piece: it plays a phrase, waits, listens to what is played and says what was
/// wrong, or goes on to the next. Keys that are played while nobody waits for them count for
/// nothing. Seconds throughout.
class Lesson {
public:
    Lesson(Piece music, std::string name, Hands which);

    /// Nothing can be learnt where there are no notes for these hands.
    [[nodiscard]] bool empty() const { return excerpts.empty(); }

    [[nodiscard]] LessonReply begin();
    [[nodiscard]] LessonReply repeat();
    [[nodiscard]] LessonReply skip();
    [[nodiscard]] LessonReply back();
    [[nodiscard]] LessonReply setHands(Hands which);

    /// The notes of the phrase, in words.
    [[nodiscard]] std::string notes() const;

    /// What `demo` means: the phrase, by itself.
    [[nodiscard]] Piece demo() const { return pieceOf(excerpts[place], piece); }

    /// It has said and played what it wanted to; it is the player's turn.
    void listen(double now);

    [[nodiscard]] LessonReply press(int pitch, double now);
    [[nodiscard]] LessonReply advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    [[nodiscard]] const std::string &title() const { return songTitle; }
    [[nodiscard]] Hands hands() const { return chosen; }
    [[nodiscard]] bool listening() const { return attempt.has_value(); }

private:
    [[nodiscard]] LessonReply present(std::string before = {});
    [[nodiscard]] std::string whereWeAre() const;
    [[nodiscard]] LessonReply missed();
    [[nodiscard]] LessonReply passed();

    Piece piece;
    std::string songTitle;
    Hands chosen;
    std::vector<Excerpt> excerpts;
    std::size_t place = 0;
    std::optional<Attempt> attempt;
    int misses = 0; ///< of this excerpt
    double lastKey = 0;
    bool reminded = false;
};

} // namespace kelo::engine
