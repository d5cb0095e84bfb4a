#include "link/engine_supervisor.h"

#include "link/bridge.h"
#include "link/time_source.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QPointer>

#include <utility>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr double restartAfterCrash = 1.0; // seconds
constexpr double restartAfterStop = 0.4; // seconds
constexpr auto quitPatience = 1500ms;

} // namespace

EngineSupervisor::EngineSupervisor(Setup setup, EngineProcess::LineHandler handler, QObject *parent)
    : QObject(parent)
    , setup_(std::move(setup))
    , handler_(std::move(handler))
{
}

void EngineSupervisor::start()
{
    stopping_ = asked_ = false;
    Q_EMIT stateChanged(EngineState::Starting);

    QProcessEnvironment environment = setup_.environment;
    environment.insert(u"ZU_UI"_s, u"1"_s);
    environment.insert(u"KELO_HOME"_s, setup_.baseDir);
    environment.insert(u"KELO_PAYLOAD"_s, setup_.payload);
    environment.insert(u"TERM"_s, u"dumb"_s);
    environment.insert(
        u"PATH"_s, u"/usr/bin:/bin:/usr/sbin:/sbin:/opt/homebrew/bin:/usr/local/bin"_s);

    release();
    if (!QDir().mkpath(setup_.baseDir)) {
        qCWarning(linkLog) << "no data directory can be at" << setup_.baseDir;
        Q_EMIT stateChanged(EngineState::Offline);
        return;
    }
    installBridge(setup_.payload, setup_.baseDir);
    // The engine runs in the data directory, where a relative path would lead elsewhere.
    const QString executable = QFileInfo(setup_.payload + "/kelo-engine"_L1).absoluteFilePath();
    process_ = new EngineProcess({executable, setup_.baseDir, environment}, handler_, this);
    connect(process_, &EngineProcess::failedToStart, this, [this] {
        release();
        Q_EMIT stateChanged(EngineState::Offline);
    });
    connect(process_, &EngineProcess::ended, this, &EngineSupervisor::processEnded);
    process_->start();
}

void EngineSupervisor::stop()
{
    if (!process_ || asked_)
        return;
    stopping_ = asked_ = true;
    process_->write("q");
    process_->waitForEnd(quitPatience);
    process_->closeInput();
    if (process_->isRunning())
        process_->terminate();
}

void EngineSupervisor::leave()
{
    process_ = nullptr;
    qDeleteAll(findChildren<EngineProcess *>());
}

void EngineSupervisor::restart()
{
    stop();
    release();
    setup_.time.after(restartAfterStop, this, [this, mine = ++starts_] {
        if (mine == starts_)
            start();
    });
}

void EngineSupervisor::write(const QByteArray &bytes)
{
    if (process_)
        process_->write(bytes);
}

void EngineSupervisor::condemn()
{
    if (process_)
        process_->condemn();
}

void EngineSupervisor::processEnded(bool clean)
{
    if (!clean && !stopping_ && crashes_.forgive(setup_.time.now())) {
        Q_EMIT stateChanged(EngineState::Restarting);
        setup_.time.after(restartAfterCrash, this, [this, crashed = QPointer(process_)] {
            if (crashed && process_ == crashed)
                start();
        });
        return;
    }
    Q_EMIT gone(clean && !stopping_);
}

void EngineSupervisor::release()
{
    if (process_)
        std::exchange(process_, nullptr)->retire();
}

} // namespace kelo
