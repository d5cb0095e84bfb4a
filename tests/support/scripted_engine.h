#pragma once

#include "support/files.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>

namespace kelo::test {

/// An engine that does as it is told: a payload folder with a real program in it, which follows a
/// script and writes down what it is given. The script may change between two runs.
///
/// A script is a list of steps, one a line; after the last one the engine serves.
///
///     line TEXT      prints TEXT and a line feed
///     raw TEXT       prints TEXT; \n, \r, \\ and \xHH stand for bytes
///     burst N TEXT   prints N lines of TEXT, "#" in it replaced by 0, 1, 2 ...
///     bytes N        prints N times "x", no line feed
///     stderr N       the same on the standard error
///     sleep MS       does nothing for a while, not even reading
///     wait TEXT      reads its input until TEXT has come
///     stubborn       from here on ignores both "q" and the polite termination signal
///     saves MS       ignores "q"; the termination signal has it take MS, note that, and end
///     flood          starts a child that prints for as long as somebody reads
///     deaf           closes its input
///     crash          dies of a signal
///     exit N         ends with that status
///     follow FIFO    prints what comes there, or does it where that is "crash" or "exit 0"
///     serve          reads its input until it ends or, unless stubborn, "q" comes; then exit 0
class ScriptedEngine {
public:
    /// Keeps its script and its notes in `folder`, which must exist.
    explicit ScriptedEngine(const QString &folder)
        : script_(folder + QStringLiteral("/script"))
    {
        play({});
    }

    /// What the engine does from its next start on.
    void play(const QByteArray &script) const { writeFile(script_, script); }

    /// The folder to name in "KELO_PAYLOAD".
    static QString payload() { return QStringLiteral(KELO_SCRIPTED_PAYLOAD); }
    /// The environment of this process and what the engine needs to find its script.
    [[nodiscard]] QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("KELO_SCRIPT"), script_);
        return environment;
    }

    /// Starts so far.
    [[nodiscard]] qsizetype runs() const { return notes("runs").size(); }
    /// Process id of the last run.
    [[nodiscard]] qint64 pid() const { return notes("pid").toLongLong(); }
    /// Process id of the last flooding child.
    [[nodiscard]] qint64 flooder() const { return notes("flooder").toLongLong(); }
    /// One that "saves" had the time it needed.
    [[nodiscard]] bool saved() const { return notes("saved") == "yes"; }
    /// Numbers of the files that were open when the last run began.
    [[nodiscard]] QByteArray files() const { return notes("files"); }
    /// All that was read from the standard input, over all runs.
    [[nodiscard]] QByteArray input() const { return notes("input"); }
    /// Working directory of the last run.
    [[nodiscard]] QString workingDirectory() const { return QString::fromUtf8(notes("cwd")); }
    /// "NAME=value" entries that the last run was given.
    [[nodiscard]] QByteArrayList environmentSeen() const
    {
        return notes("environment").split('\n');
    }

private:
    [[nodiscard]] QByteArray notes(const char *kind) const
    {
        return readFile(script_ + u'.' + QLatin1StringView(kind));
    }

    QString script_;
};

} // namespace kelo::test
