#include "link/engine_process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QTimer>

Q_LOGGING_CATEGORY(linkLog, "kelo.link")

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr auto slice = 8ms; // half a frame of lines, then the display has its turn
constexpr int linesBetweenLooks = 64; // at the clock
constexpr qsizetype largestBacklog = 8 << 20; // bytes read and not handled
constexpr qint64 largestUnread = 8 << 20; // bytes written that the engine has not taken
constexpr auto graceOfRetired = 2s;

} // namespace

EngineProcess::EngineProcess(const EngineCommand &command, LineHandler handler, QObject *parent)
    : QObject(parent)
    , handler_(std::move(handler))
{
    process_.setProgram(command.executable);
    process_.setProcessEnvironment(command.environment);
    process_.setStandardErrorFile(QProcess::nullDevice());
    if (QDir(command.workingDirectory).exists())
        process_.setWorkingDirectory(command.workingDirectory);
    else
        qCWarning(linkLog) << "no data directory at" << command.workingDirectory;

    connect(&process_, &QProcess::readyReadStandardOutput, this, &EngineProcess::readOutput);
    connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        qCWarning(linkLog) << "engine:" << process_.errorString();
        if (error == QProcess::FailedToStart)
            Q_EMIT failedToStart();
    });
    connect(&process_, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        lines_.append(process_.readAllStandardOutput());
        drain(std::chrono::milliseconds::max());
        qCInfo(linkLog) << "engine ended with" << code << status;
        Q_EMIT ended(status == QProcess::NormalExit && code == 0);
    });
}

EngineProcess::~EngineProcess()
{
    // The process object ends its child while it is destroyed, and reports that to nobody.
    process_.disconnect(this);
}

void EngineProcess::start()
{
    process_.start();
}

void EngineProcess::write(const QByteArray &bytes)
{
    if (!isRunning())
        return;
    process_.write(bytes);
    if (process_.bytesToWrite() > largestUnread) {
        qCWarning(linkLog) << "the engine no longer reads what it is sent: ending it";
        process_.kill();
    }
}

void EngineProcess::waitForEnd(std::chrono::milliseconds longest)
{
    process_.waitForFinished(static_cast<int>(longest.count()));
}

void EngineProcess::retire()
{
    disconnect();
    process_.disconnect(this);
    handler_ = [](QByteArrayView) {};
    setParent(nullptr);
    if (!isRunning()) {
        deleteLater();
        return;
    }
    connect(&process_, &QProcess::finished, this, &QObject::deleteLater);
    connect(
        &process_, &QProcess::readyReadStandardOutput, &process_, &QProcess::readAllStandardOutput);
    QTimer::singleShot(graceOfRetired, &process_, &QProcess::kill);
}

void EngineProcess::readOutput()
{
    lines_.append(process_.readAllStandardOutput());
    if (lines_.pending() > largestBacklog)
        drain(std::chrono::milliseconds::max());
    else if (!slicePending_)
        drain(slice);
}

void EngineProcess::drain(std::chrono::milliseconds longest)
{
    QElapsedTimer spent;
    spent.start();
    for (int count = 1;; ++count) {
        const auto line = lines_.next();
        if (!line)
            return;
        if (line->startsWith('@')) {
            const QByteArrayView text = line->sliced(1);
            if (text.isValidUtf8())
                handler_(text);
            else
                handler_(QString::fromUtf8(text).toUtf8());
        }
        if (count % linesBetweenLooks == 0 && std::chrono::milliseconds(spent.elapsed()) > longest)
            break;
    }
    slicePending_ = true;
    QTimer::singleShot(0, this, [this] {
        slicePending_ = false;
        drain(slice);
    });
}

} // namespace kelo
