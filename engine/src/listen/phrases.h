#pragma once

#include "lessons/excerpt.h"
#include "listen/jobs.h"
#include "listen/words.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelo::engine {

/// What a song answers to.
struct SongName {
    std::string title;
    std::string composer;
};

/// What was asked for.
struct Request {
    Action action;
    std::optional<int> number{};
    std::optional<std::size_t> song{}; ///< its place among the songs
    std::optional<bool> on{};
    std::optional<Hands> hands{}; ///< of a song that is to be learned

    friend bool operator==(const Request &, const Request &) = default;
};

/// How the words have to be spelt: as they are, or so that they sound the same.
enum class Spoken { Exactly, Roughly };

/// Finds what was asked for: the way of asking that most of the words belong to, whatever their
/// order. Courtesies are passed over; nothing where too much is left unexplained.
[[nodiscard]] std::optional<Request> understand(
    std::span<const Word> words, std::span<const SongName> songs, Spoken how = Spoken::Exactly);

/// The same where it is certain that something was asked for: what cannot be understood is tried
/// again with the words that it sounds like.
[[nodiscard]] std::optional<Request> understandKindly(
    std::span<const Word> words, std::span<const SongName> songs);

/// What is worth saying in a mode (`where`: one of the bits of Where), "#" and "@" filled in.
[[nodiscard]] std::vector<std::string> vocabulary(unsigned where, std::span<const SongName> songs);

} // namespace kelo::engine
