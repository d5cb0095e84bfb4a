#pragma once

#include "activities/session.h"

#include <optional>
#include <string>
#include <variant>

namespace kelo::engine {

/// What was read, or nothing after saying why not.
[[nodiscard]] std::optional<Heard> heardFrom(Session &session, std::variant<Piece, ReadFault> read,
    const std::string &title, const Moment &now);

/// A song of the library by its place.
[[nodiscard]] std::optional<Heard> loadSong(Session &session, std::size_t song, const Moment &now);

/// Chooses the song that was asked for; false after saying that there is no such song.
bool chooseSong(Session &session, const Request &request, const Moment &now);

/// The piece that a request names, or else what was heard last; nothing after saying why.
[[nodiscard]] std::optional<Heard> askedSong(
    Session &session, const Request &request, const Moment &now);

/// Looks for songs that came or went.
void refreshSongs(Session &session);
/// Writes `bytes` to a new file of the songs folder; false where the disk would not have it.
[[nodiscard]] bool keepFile(const Session &session, const std::string &name,
    std::string_view extension, std::string_view bytes);

/// The user's theme: the composition, or else what was heard or played last. Nothing after saying
/// that there is none.
[[nodiscard]] std::optional<Score> usersTheme(Session &session, const Moment &now);

/// The composition that was not saved when the engine ended.
void loadDraft(Session &session);

/// Writes the composition where it outlives the engine, or forgets what was written.
void keepDraft(Session &session);

/// "2025-03-07 14.05", for names of files.
[[nodiscard]] std::string stampOf(const Moment &now);

} // namespace kelo::engine
