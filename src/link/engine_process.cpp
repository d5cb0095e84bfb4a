#include "link/engine_process.h"

#include "link/parse.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QScopedValueRollback>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(linkLog, "kelo.link")

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr auto slice = 8ms; // half a frame of lines, then the display has its turn
constexpr auto withoutEnd = std::chrono::milliseconds::max();
constexpr int linesBetweenLooks = 8; // at the clock
constexpr int lastChunks = 16; // read after the end, when others may still hold the pipe
constexpr qint64 largestUnread = 8 << 20; // bytes written that the engine has not taken
constexpr auto look = 50ms; // at the output of an engine that is waited for
constexpr auto grace = 5s; // to end, for an engine that was told to
constexpr auto betweenDrains = 50ms;

// Kills process "$1" unless it has ended by itself in "$2" tenths of a second. For the program's
// end, when nobody else is left to do it; one process and no group, since a mistake there is the
// worst.
constexpr auto killLater = u"i=0; while kill -0 \"$1\" 2>/dev/null; do "
                           "[ $i -lt \"$2\" ] || { kill -KILL \"$1\"; exit; }; "
                           "i=$((i+1)); sleep 0.1; done";

/// Whether the system would run it. QProcess finds that out too, but loses a file descriptor each
/// time it would not.
bool isProgram(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isExecutable())
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true; // it may be run without being read
    constexpr qint64 headerSize = 64; // of a program's file
    const QByteArray header = file.read(headerSize);
    return header.startsWith("#!")
        || (header.size() == headerSize
            && header.startsWith("\x7f"
                                 "ELF"));
}

void closeFile(int &file)
{
    if (file >= 0)
        ::close(std::exchange(file, -1));
}

} // namespace

EngineProcess::EngineProcess(const EngineCommand &command, LineHandler handler, QObject *parent)
    : QObject(parent)
    , handler_(std::move(handler))
{
    process_.setProgram(command.executable);
    process_.setProcessEnvironment(command.environment);
    process_.setStandardErrorFile(QProcess::nullDevice());
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.setChildProcessModifier([this] {
        ::setpgid(0, 0);
        ::dup2(outputOfEngine_, STDOUT_FILENO);
    });
    process_.setWorkingDirectory(command.workingDirectory);
    connect(&draining_, &QTimer::timeout, this, &EngineProcess::drain);

    connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::Timedout)
            return; // we only waited
        qCWarning(linkLog) << "engine:" << process_.errorString();
        if (error == QProcess::WriteError)
            writable_ = false; // it closed its input; it may have more to say all the same
        else if (error == QProcess::FailedToStart)
            Q_EMIT failedToStart();
    });
    // Queued, so that whoever waits for the end has returned before it is reported.
    connect(&process_, &QProcess::finished, this, &EngineProcess::reportEnd, Qt::QueuedConnection);
}

EngineProcess::~EngineProcess()
{
    process_.disconnect(this);
    if (isRunning())
        leaveToItself();
    closeOutput();
}

void EngineProcess::start()
{
    const bool startable = isProgram(process_.program());
    if (!startable)
        qCWarning(linkLog) << "no engine at" << process_.program();
    if (!startable || !openOutput()) {
        QMetaObject::invokeMethod(this, &EngineProcess::failedToStart, Qt::QueuedConnection);
        return;
    }
    process_.start();
    closeFile(outputOfEngine_);
}

bool EngineProcess::openOutput()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        qCWarning(linkLog) << "no pipe for the engine:" << qt_error_string();
        return false;
    }
    output_ = ends[0];
    outputOfEngine_ = ends[1];
    ::fcntl(output_, F_SETFL, O_NONBLOCK);
    outputReady_ = std::make_unique<QSocketNotifier>(output_, QSocketNotifier::Read);
    connect(outputReady_.get(), &QSocketNotifier::activated, this, &EngineProcess::readOutput);
    return true;
}

void EngineProcess::watchOutput(bool on)
{
    if (outputReady_)
        outputReady_->setEnabled(on);
}

void EngineProcess::closeOutput()
{
    outputReady_.reset();
    closeFile(output_);
}

void EngineProcess::write(const QByteArray &bytes)
{
    if (!isRunning() || !writable_)
        return;
    process_.write(bytes);
    if (process_.bytesToWrite() > largestUnread) {
        qCWarning(linkLog) << "the engine no longer reads what it is sent: ending it";
        condemn();
    }
}

void EngineProcess::waitForEnd(std::chrono::milliseconds longest)
{
    const QDeadlineTimer deadline(longest);
    while (isRunning() && !deadline.hasExpired()) {
        process_.waitForFinished(
            static_cast<int>(std::min<qint64>(deadline.remainingTime(), look.count())));
        // Read, so that a full pipe does not keep it from ending. In the middle of a line there
        // is no place to keep the bytes, and of a flood the beginning will do.
        for (auto bytes = readChunk(); !bytes.isEmpty() && !deadline.hasExpired();
             bytes = readChunk()) {
            if (!handling_ && lines_.pending() < LineSplitter::longestLine)
                lines_.append(bytes);
        }
    }
}

void EngineProcess::condemn()
{
    condemned_ = true;
    writable_ = false;
    listening_ = false;
    process_.kill();
}

void EngineProcess::terminate()
{
    process_.terminate();
}

void EngineProcess::leaveToItself()
{
    const qint64 pid = process_.processId();
    if (pid <= 1)
        return;
    process_.closeWriteChannel();
    process_.terminate();
    const auto tenths = std::chrono::duration_cast<std::chrono::milliseconds>(grace) / 100ms;
    QProcess::startDetached(QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"), QString::fromUtf16(killLater), QStringLiteral("kelo"),
            QString::number(pid), QString::number(tenths)});
    process_.leave();
}

void EngineProcess::retire()
{
    disconnect();
    listening_ = false;
    if (!isRunning()) {
        deleteLater();
        return;
    }
    process_.closeWriteChannel();
    connect(&process_, &QProcess::finished, this, &QObject::deleteLater);
    // Nobody listens, but an engine must not hang in its last words.
    watchOutput(false);
    draining_.start(betweenDrains);
    QTimer::singleShot(grace, &process_, &QProcess::kill);
}

void EngineProcess::drain()
{
    for (int i = 0; i < lastChunks && !readChunk().isEmpty(); ++i) { }
}

QByteArrayView EngineProcess::readChunk()
{
    const ssize_t count = ::read(output_, chunk_.data(), chunk_.size());
    if (count == 0)
        watchOutput(false); // nobody is left to write
    return {chunk_.data(), static_cast<qsizetype>(std::max<ssize_t>(count, 0))};
}

void EngineProcess::readOutput()
{
    const QByteArrayView bytes = readChunk();
    if (bytes.isEmpty())
        return;
    lines_.append(bytes);
    handleLines(slice);
}

void EngineProcess::handleLines(std::chrono::milliseconds longest)
{
    watchOutput(false);
    QElapsedTimer spent;
    spent.start();
    for (int count = 1; listening_; ++count) {
        const auto line = lines_.next();
        if (!line)
            break;
        if (line->startsWith('@')) {
            const QScopedValueRollback handling(handling_, true);
            const QByteArrayView text = line->sliced(1);
            if (text.isValidUtf8())
                handler_(text);
            else
                handler_(parse::text(text).toUtf8());
        }
        if (count % linesBetweenLooks == 0
            && std::chrono::milliseconds(spent.elapsed()) > longest) {
            QTimer::singleShot(0, this, [this] { handleLines(slice); });
            return;
        }
    }
    watchOutput(listening_);
}

void EngineProcess::reportEnd(int code, QProcess::ExitStatus status)
{
    if (handling_) { // in an event loop inside a handler: that line comes first
        QTimer::singleShot(look, this, [this, code, status] { reportEnd(code, status); });
        return;
    }
    for (int i = 0; i < lastChunks; ++i)
        lines_.append(readChunk());
    handleLines(withoutEnd);
    closeOutput(); // a child of the engine may still write to it
    qCInfo(linkLog) << "engine ended with" << code << status;
    Q_EMIT ended(status == QProcess::NormalExit && code == 0 && !condemned_);
}

} // namespace kelo
