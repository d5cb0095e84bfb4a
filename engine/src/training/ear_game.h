#pragma once

#include "lessons/reply.h"
#include "music/piece.h"

#include <string>
#include <string_view>

namespace kelo::engine {

/// Something is played and wants to be found on the keys, by ear alone.
class EarGame {
public:
    EarGame() = default;
    EarGame(const EarGame &) = delete;
    EarGame &operator=(const EarGame &) = delete;
    virtual ~EarGame() = default;

    [[nodiscard]] virtual Reply begin() = 0;
    [[nodiscard]] Reply repeat() const { return {{}, {}, true}; }
    /// Gives this one up: says what it was and goes on.
    [[nodiscard]] virtual Reply skip() = 0;

    /// How it went, in a sentence.
    [[nodiscard]] virtual std::string tally() const = 0;
    /// What `demo` means: what is to be found.
    [[nodiscard]] virtual Piece demo() const = 0;
    /// What was asked, in words.
    [[nodiscard]] virtual std::string answer() const = 0;
    /// It was asked for the answer, so that finding it is worth nothing any more.
    void tell() { told_ = true; }

    /// It has said and played what it wanted to; it is the player's turn.
    virtual void listen() = 0;
    [[nodiscard]] bool listening() const { return waiting_; }
    [[nodiscard]] virtual Reply press(int pitch) = 0;

    /// "This is ear training."
    [[nodiscard]] virtual std::string_view place() const = 0;
    [[nodiscard]] virtual std::string_view help() const = 0;

protected:
    bool waiting_ = false; ///< for the player
    bool told_ = false; ///< the answer
};

} // namespace kelo::engine
