#include "link/engine_process.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
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
constexpr auto graceOfRetired = 2s;

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
    process_.setChildProcessModifier([this] { ::dup2(outputOfEngine_, STDOUT_FILENO); });
    if (QDir(command.workingDirectory).exists())
        process_.setWorkingDirectory(command.workingDirectory);
    else
        qCWarning(linkLog) << "no data directory at" << command.workingDirectory;

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
    if (isRunning()) {
        process_.kill();
        process_.waitForFinished();
    }
    outputReady_.reset();
    closeFile(output_);
}

void EngineProcess::start()
{
    if (!openOutput()) {
        QMetaObject::invokeMethod(this, &EngineProcess::failedToStart, Qt::QueuedConnection);
        return;
    }
    process_.start();
    closeFile(outputOfEngine_);
}

bool EngineProcess::openOutput()
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        qCWarning(linkLog) << "no pipe for the engine:" << qt_error_string();
        return false;
    }
    output_ = ends[0];
    outputOfEngine_ = ends[1];
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(output_, F_SETFL, O_NONBLOCK);
    outputReady_ = std::make_unique<QSocketNotifier>(output_, QSocketNotifier::Read);
    connect(outputReady_.get(), &QSocketNotifier::activated, this, &EngineProcess::readOutput);
    return true;
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
    QTimer::singleShot(graceOfRetired, &process_, &QProcess::kill);
}

QByteArrayView EngineProcess::readChunk()
{
    const ssize_t count = ::read(output_, chunk_.data(), chunk_.size());
    if (count == 0)
        outputReady_->setEnabled(false); // nobody is left to write
    return {chunk_.data(), static_cast<qsizetype>(std::max<ssize_t>(count, 0))};
}

void EngineProcess::readOutput()
{
    const QByteArrayView bytes = readChunk();
    if (!listening_ || bytes.isEmpty())
        return;
    lines_.append(bytes);
    handleLines(slice);
}

void EngineProcess::handleLines(std::chrono::milliseconds longest)
{
    outputReady_->setEnabled(false);
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
                handler_(QString::fromUtf8(text).toUtf8());
        }
        if (count % linesBetweenLooks == 0
            && std::chrono::milliseconds(spent.elapsed()) > longest) {
            QTimer::singleShot(0, this, [this] { handleLines(slice); });
            return;
        }
    }
    outputReady_->setEnabled(true);
}

void EngineProcess::reportEnd(int code, QProcess::ExitStatus status)
{
    if (handling_) { // in an event loop inside a handler: that line comes first
        QTimer::singleShot(look, this, [this, code, status] { reportEnd(code, status); });
        return;
    }
    for (int i = 0; i < lastChunks && listening_; ++i) {
        const QByteArrayView bytes = readChunk();
        if (bytes.isEmpty())
            break;
        lines_.append(bytes);
        handleLines(withoutEnd);
    }
    handleLines(withoutEnd);
    listening_ = false;
    qCInfo(linkLog) << "engine ended with" << code << status;
    Q_EMIT ended(status == QProcess::NormalExit && code == 0 && !condemned_);
}

} // namespace kelo
