#pragma once

#include "protocol/input.h"

#include <optional>
#include <string>

namespace kelo::engine {

/// A command that is being typed, key by key.
class TypingLine {
public:
    enum class End { Run, Leave };

    /// What a key did.
    struct Change {
        std::optional<End> end; ///< typing is over
        std::string echo; ///< to be said: the word that was completed, or what was taken away
    };

    [[nodiscard]] Change press(Key pressed);

    [[nodiscard]] const std::string &text() const { return line_; }

    static constexpr std::size_t longest = 500;

private:
    std::string line_;
};

} // namespace kelo::engine
