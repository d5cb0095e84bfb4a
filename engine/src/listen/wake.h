#pragma once

#include "listen/words.h"

#include <functional>
#include <optional>
#include <span>
#include <string>

namespace kelo::engine {

/// Says whether words make a command that can be carried out.
using Understands = std::function<bool(std::span<const Word>)>;

/// A command found in what was heard: these of the words, perhaps none after the name alone.
struct Found {
    std::size_t first = 0;
    std::size_t count = 0;

    friend bool operator==(const Found &, const Found &) = default;
};

/// Finds the command that follows `name` (lower case) in what was heard. The name itself counts
/// where it opens a sentence, greetings and noise before it aside, or where what follows is
/// understood: it may be a common word. A spelling that only sounds like it, in one piece or
/// two, counts where what follows is understood. Of several the last one understood is taken.
[[nodiscard]] std::optional<Found> findCommand(
    std::span<const Word> words, const std::string &name, const Understands &understands);

} // namespace kelo::engine
