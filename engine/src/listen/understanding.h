#pragma once

#include "listen/jobs.h"
#include "listen/request.h"
#include "listen/words.h"
#include "songs/song_name.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelo::engine {

/// How the words have to be spelt: as they are, or so that they sound the same.
enum class Spoken { Exactly, Roughly };

/// Finds what was asked for: the way of asking that most of the words belong to, whatever their
/// order. Courtesies are passed over; nothing where too much is left unexplained.
[[nodiscard]] std::optional<Request> understand(
    std::span<const Word> words, std::span<const SongName> songs, Spoken how = Spoken::Exactly);

/// The same where it is certain that something was asked for: what cannot be understood is tried
/// again with words that sound the same.
[[nodiscard]] std::optional<Request> understandKindly(
    std::span<const Word> words, std::span<const SongName> songs);

/// What is worth saying in a mode (`where`: one of the bits of Where), "#" and "@" filled in.
[[nodiscard]] std::vector<std::string> vocabulary(unsigned where, std::span<const SongName> songs);

} // namespace kelo::engine
