#pragma once

#include "link/crash_window.h"
#include "link/engine_process.h"

#include <QProcessEnvironment>

namespace kelo {

class TimeSource;

/// What is known of the engine's process.
enum class EngineState { Starting, Online, Restarting, Offline };

/// Keeps an engine running: starts it, starts it anew when it crashes (three times within two
/// minutes), ends it when asked to. Its one engine at a time is an `EngineProcess`.
class EngineSupervisor : public QObject {
    Q_OBJECT

public:
    struct Setup {
        QString baseDir; ///< the data directory, in which the engine runs
        QString payload; ///< the directory that holds it
        QProcessEnvironment environment; ///< what it inherits
        TimeSource &time;
    };

    EngineSupervisor(Setup setup, EngineProcess::LineHandler handler, QObject *parent);

    void start();
    /// Asks the engine to quit, and tells it to after 1.5 seconds, for which it blocks. Then it has
    /// seconds to end, in the background.
    void stop();
    /// Stops the engine and starts a new one 0.4 seconds after the last of these calls.
    void restart();
    /// Lets go of every engine that still runs, as the end of this object does.
    void leave();
    /// From here to the next start an end of the engine is not its crash.
    void expectEnd() { stopping_ = true; }

    /// Writes the bytes as they are; dropped when there is no engine to read them.
    void write(const QByteArray &bytes);
    /// Kills an engine that can't be trusted any more; counts as a crash.
    void condemn();

Q_SIGNALS:
    /// Starting, Restarting, or Offline when it could not be launched.
    void stateChanged(EngineState state);
    /// The engine has ended for good; cleanly and of its own accord, or not.
    void gone(bool byItself);

private:
    void processEnded(bool clean);
    void release();

    Setup setup_;
    EngineProcess::LineHandler handler_;
    EngineProcess *process_ = nullptr; // a child of ours; the identity of the current run
    CrashWindow crashes_;
    bool stopping_ = false; // an end is no crash
    bool asked_ = false; // to quit
    int starts_ = 0; // serial number of the restart that was asked for last
};

} // namespace kelo
