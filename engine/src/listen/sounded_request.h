#pragma once

#include "listen/understanding.h"

#include <optional>
#include <span>
#include <string>

namespace kelo::engine {

/// A request and the words that ask for it.
struct Wording {
    Request request;
    std::string words;
};

/// What may have been asked for, by the sound of words that mean nothing.
struct Sounded {
    Wording likeliest;
    std::optional<Wording> other; ///< about as likely
    bool certain = false; ///< it need not be asked about
};

/// Compares the sounds of `words`, wherever one word ends and the next begins, with those of all
/// that is worth saying in a mode (`where`: bits of Where). How much they differ, and how much more
/// from anything else, tells whether one can be certain; nothing where it would be mere guessing.
[[nodiscard]] std::optional<Sounded> soundedRequest(
    std::span<const Word> words, unsigned where, std::span<const SongName> songs);

/// The one of two wordings that the words sound like, if it is one of them beyond doubt.
[[nodiscard]] std::optional<Wording> likelierOf(
    std::span<const Word> words, const Wording &first, const std::optional<Wording> &second);

} // namespace kelo::engine
