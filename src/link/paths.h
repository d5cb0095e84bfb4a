#pragma once

#include <QString>
#include <QVariantMap>

class QProcessEnvironment;

namespace kelo {

/// The data directory that the display and the engine share: "KELO_HOME" when set, made absolute,
/// otherwise the system's place for per-user data followed by "/Kelo"; there too when the name is
/// not UTF-8, for then the engine could not be told of it. Created when missing; an error in that
/// is ignored and the path is used all the same, but for the system's place: instead of that,
/// "/Kelo" in "XDG_RUNTIME_DIR" serves until the user logs out.
[[nodiscard]] QString dataDirectory(const QProcessEnvironment &environment);

/// The data directory of this process, found once.
[[nodiscard]] const QString &baseDir();

/// The first-run profile that the engine keeps in `directory`, read anew on every call. Empty when
/// the file is missing, unreadable, not JSON or not an object.
[[nodiscard]] QVariantMap savedProfile(const QString &directory);

/// Where the user keeps MIDI files for us; used only when it exists.
[[nodiscard]] QString songsFolder();

/// The directory that holds the engine: "KELO_PAYLOAD" taken as it is when set, otherwise
/// "payload" beside the executable, or where an installation puts it.
[[nodiscard]] QString payloadDirectory(const QProcessEnvironment &environment);

} // namespace kelo
