#pragma once

#include "lessons/attempt.h"
#include "lessons/excerpt.h"
#include "lessons/reply.h"

#include <optional>
#include <string>

namespace kelo::engine {

/// A lesson on one piece: it plays a phrase, waits, listens to what is played and says what was
/// wrong and goes on from the beat before, or goes on to the next part. Keys that are played while
/// nobody waits for them count for nothing. Seconds throughout.
class Lesson {
public:
    Lesson(Piece piece, std::string title, Hands hands);

    /// Nothing can be learnt where there are no notes for these hands.
    [[nodiscard]] bool empty() const { return excerpts_.empty(); }

    /// At the part that has this bar, from 1 on.
    [[nodiscard]] Reply begin(int bar = 1);
    [[nodiscard]] Reply repeat();
    [[nodiscard]] Reply skip();
    [[nodiscard]] Reply back();
    [[nodiscard]] Reply setHands(Hands which);
    [[nodiscard]] Reply toBar(int bar);

    /// The bar where the part begins.
    [[nodiscard]] int bar() const { return excerpts_[place_].firstBar; }

    /// "Bars one and two, right hand."
    [[nodiscard]] std::string whereWeAre() const;

    /// The part may begin with this key.
    [[nodiscard]] bool entersWith(int pitch) const;

    /// The notes of the part with their octaves and lengths, in words.
    [[nodiscard]] std::string notes() const;

    /// What `demo` means: the phrase, by itself.
    [[nodiscard]] Piece demo() const { return pieceOf(excerpts_[place_], piece_); }

    /// It has said and played what it wanted to; it is the player's turn.
    void listen(double now);

    [[nodiscard]] Reply press(int pitch, double now);
    [[nodiscard]] Reply advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    [[nodiscard]] const Piece &wholePiece() const { return piece_; }
    [[nodiscard]] const std::string &title() const { return title_; }
    [[nodiscard]] Hands hands() const { return hands_; }
    [[nodiscard]] bool listening() const { return attempt_.has_value(); }

private:
    void goTo(int bar);
    [[nodiscard]] Reply present(std::string before = {});
    [[nodiscard]] Reply missed();
    [[nodiscard]] Reply passed();

    Piece piece_;
    std::string title_;
    Hands hands_;
    std::vector<Excerpt> excerpts_;
    std::size_t place_ = 0;
    std::optional<Attempt> attempt_;
    int misses_ = 0; ///< of this excerpt
    double lastKey_ = 0;
    bool reminded_ = false;
};

} // namespace kelo::engine
