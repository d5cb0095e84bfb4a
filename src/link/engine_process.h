#pragma once

#include "link/line_splitter.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <chrono>
#include <functional>
#include <memory>

namespace kelo {

/// What is started, where and with which environment.
struct EngineCommand {
    QString executable;
    QString workingDirectory;
    QProcessEnvironment environment;
};

/// A child process that may outlive its object.
class LeavableProcess final : public QProcess {
public:
    /// It goes on by itself: neither watched nor killed from here on.
    void leave() { setProcessState(NotRunning); }
};

/// One run of the engine. Starts it, hands on the lines it prints, reports its end once.
/// Lives on the GUI thread and never blocks it, but for `waitForEnd`.
///
/// Neither direction can fill memory. Lines are handled in slices between which the event loop
/// runs, and nothing more is read before the last are handled, so an engine that prints faster
/// has to wait; that is why its output comes through a pipe of our own and not through QProcess,
/// which reads all there is. An engine that does not read what is written to it is ended.
///
/// It runs in a process group of its own, so what a terminal sends to ours does not reach it. Once
/// told to end, it has seconds to do so, beyond the life of this object and of the program.
class EngineProcess : public QObject {
    Q_OBJECT

public:
    /// Called with every line that begins with "@", without that marker: valid UTF-8, in order.
    /// The bytes are valid during the call only.
    using LineHandler = std::function<void(QByteArrayView)>;

    EngineProcess(const EngineCommand &command, LineHandler handler, QObject *parent);
    ~EngineProcess() override;

    void start();
    [[nodiscard]] bool isRunning() const { return process_.state() != QProcess::NotRunning; }

    /// Writes the bytes as they are; dropped when nobody is there to read them.
    void write(const QByteArray &bytes);

    /// Blocks until the process has ended, at most that long. What it prints meanwhile is handled
    /// after that, as is its end.
    void waitForEnd(std::chrono::milliseconds longest);
    void closeInput() { process_.closeWriteChannel(); }
    void terminate();

    /// Kills an engine that can't be trusted any more. It is no longer listened to, and its end is
    /// reported as unclean.
    void condemn();

    /// Lets go of a process that is no longer ours to talk to: its input is closed, nothing it does
    /// is reported any more, it is killed if it has not ended seconds later, and then this object
    /// deletes itself.
    void retire();

Q_SIGNALS:
    /// It could not be started; `ended` does not follow.
    void failedToStart();
    /// It has ended and all its lines were handed on; `clean` when its exit status was 0.
    void ended(bool clean);

private:
    [[nodiscard]] bool openOutput();
    void watchOutput(bool on);
    void closeOutput();
    void drain();
    void leaveToItself();
    [[nodiscard]] QByteArrayView readChunk();
    void readOutput();
    void handleLines(std::chrono::milliseconds longest);
    void reportEnd(int code, QProcess::ExitStatus status);

    LeavableProcess process_;
    int output_ = -1; // our end of the pipe from its standard output, never blocking
    int outputOfEngine_ = -1; // its end, ours only until it runs
    std::unique_ptr<QSocketNotifier> outputReady_;
    QTimer draining_; // reads for nobody what a retired engine still prints
    std::array<char, 65536> chunk_; // as much as the pipe holds
    LineSplitter lines_;
    LineHandler handler_;
    bool listening_ = true;
    bool writable_ = true;
    bool handling_ = false; // a line is being handled
    bool condemned_ = false;
};

} // namespace kelo
