#pragma once

#include "lessons/attempt.h"
#include "lessons/excerpt.h"
#include "lessons/reply.h"
#include "lessons/talk.h"
#include "lessons/touch.h"
#include "practice/played_bar.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

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

    /// The bar where the part begins, or the last one of those that it joins.
    [[nodiscard]] int bar() const;

    /// Nothing but these bars with these hands; false, and all as it was, where there are none.
    bool narrow(int first, int last, Hands hands);
    /// All that is left as one part, which is not shown before.
    void joinAll();
    /// Begins with words of one's own alone.
    [[nodiscard]] Reply open(const std::string &words);
    /// Whether an example of each part is played.
    void show(bool examples) { shows_ = examples; }
    void setTalk(Talk talk, Attention attention = {})
    {
        talk_ = talk;
        attention_ = attention;
    }
    /// What follows the praise for the last part.
    void sayAtEnd(std::string words) { farewell_ = std::move(words); }

    /// "Bars one and two, right hand."
    [[nodiscard]] std::string whereWeAre() const;
    /// "Part three of twelve."
    [[nodiscard]] std::string partOfAll() const;

    /// The part may begin with this key.
    [[nodiscard]] bool entersWith(int pitch) const;

    /// The notes of the part with their octaves and lengths, in words.
    [[nodiscard]] std::string notes() const;

    /// What `demo` means: the phrase, by itself.
    [[nodiscard]] Piece demo() const { return pieceOf(excerpts_[place_], piece_); }

    /// What the player has done with a part that was left since; once.
    [[nodiscard]] std::optional<PlayedPart> takePlayed()
    {
        return std::exchange(played_, std::nullopt);
    }
    /// The part is left as it is.
    void stop() { finish(false); }

    /// It has said and played what it wanted to; it is the player's turn.
    void listen(double now);

    [[nodiscard]] Reply press(int pitch, double now);
    /// How strong each key is, before it is pressed, and when it is let go, with 0.
    void touch(int pitch, int velocity, double now);
    [[nodiscard]] Reply advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    [[nodiscard]] const Piece &wholePiece() const { return piece_; }
    [[nodiscard]] const std::string &title() const { return title_; }
    [[nodiscard]] Hands hands() const { return hands_; }
    [[nodiscard]] bool listening() const { return attempt_.has_value(); }

private:
    void goTo(int bar);
    void moveTo(std::size_t place);
    void endAttempt();
    void finish(bool passed);
    [[nodiscard]] std::string bars() const;
    [[nodiscard]] Reply present(std::string before = {});
    [[nodiscard]] Reply missed();
    [[nodiscard]] Reply passed();
    [[nodiscard]] std::string touched() const;

    Piece piece_;
    std::string title_;
    std::string farewell_;
    Talk talk_ = Talk::All;
    Attention attention_{};
    std::string told_; ///< the bars that were named last
    std::size_t presented_ = 0; ///< the part that was shown last
    bool shows_ = true; ///< an example of each part
    Hands hands_;
    std::vector<Excerpt> excerpts_;
    std::size_t place_ = 0;
    std::optional<Attempt> attempt_;
    std::optional<Touch> touch_; ///< of the attempt
    int misses_ = 0; ///< of this excerpt
    std::map<int, int> wrongKeys_; ///< of this excerpt, by bar
    std::optional<PlayedPart> played_;
    double lastKey_ = 0;
    bool reminded_ = false;
};

} // namespace kelo::engine
