#pragma once

#include "link/line_splitter.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <chrono>
#include <functional>

namespace kelo {

/// What is started, where and with which environment.
struct EngineCommand {
    QString executable;
    QString workingDirectory;
    QProcessEnvironment environment;
};

/// One run of the engine. Starts it, hands on the lines it prints, reports its end once.
/// Lives on the GUI thread and never blocks it, but for `waitForEnd`. A burst of lines is handled
/// in slices between which the event loop runs; an engine that does not read what is written to
/// it is ended.
class EngineProcess : public QObject {
    Q_OBJECT

public:
    /// Called with every line that begins with "@", without that marker: valid UTF-8, in order.
    /// The bytes are valid during the call only.
    using LineHandler = std::function<void(QByteArrayView)>;

    EngineProcess(const EngineCommand &command, LineHandler handler, QObject *parent = nullptr);
    ~EngineProcess() override;

    void start();
    [[nodiscard]] bool isRunning() const { return process_.state() != QProcess::NotRunning; }

    /// Writes the bytes as they are; dropped when the process has ended.
    void write(const QByteArray &bytes);

    /// Blocks until the process has ended, at most that long.
    void waitForEnd(std::chrono::milliseconds longest);
    void closeInput() { process_.closeWriteChannel(); }
    void terminate() { process_.terminate(); }
    void kill() { process_.kill(); }

    /// Lets go of a process that is no longer ours to talk to: nothing it does is reported any
    /// more, it is killed if it does not end by itself, and then this object deletes itself.
    void retire();

Q_SIGNALS:
    /// It could not be started; `ended` does not follow.
    void failedToStart();
    /// It has ended and all its lines were handed on; `clean` when its exit status was 0.
    void ended(bool clean);

private:
    void readOutput();
    void drain(std::chrono::milliseconds longest);

    QProcess process_;
    LineSplitter lines_;
    LineHandler handler_;
    bool slicePending_ = false;
};

} // namespace kelo
