// How soon Kelo is there, what memory it takes and what it costs while nothing happens: measured
// from outside, on the program as users run it with the engine that ships with it.

#include "link/time_source.h"
#include "support/figures.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <unistd.h>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace kelo;

namespace {

using namespace std::chrono_literals;

constexpr int starts = 7;
constexpr auto settling = 30s; // what it says first is said, and its ring rests
constexpr auto idling = 10s;
constexpr int patience = 20'000; // milliseconds

QByteArray processFile(qint64 pid, QLatin1StringView name)
{
    QFile file(u"/proc/%1/%2"_s.arg(pid).arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Kelo is gone");
    return file.readAll();
}

/// Seconds of processor time.
double cpuTime(qint64 pid)
{
    const QByteArray stat = processFile(pid, "stat"_L1);
    // The name before the last bracket may hold blanks; user and system time are 12th and 13th
    // of what follows.
    const QByteArrayList fields = stat.sliced(stat.lastIndexOf(')') + 2).split(' ');
    return (fields[11].toDouble() + fields[12].toDouble())
        / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// Its share of all memory it uses, in MiB.
double proportionalMemory(qint64 pid)
{
    for (const QByteArray &line : processFile(pid, "smaps_rollup"_L1).split('\n')) {
        if (line.startsWith("Pss:"))
            return line.sliced(4).trimmed().split(' ').first().toDouble() / 1024;
    }
    qFatal("no memory figures");
}

class Kelo {
public:
    Kelo()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"KELO_HOME"_s, home_.filePath(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, home_.filePath(u"config"_s));
        environment.insert(u"XDG_RUNTIME_DIR"_s, home_.path());
        environment.insert(u"QT_LOGGING_RULES"_s, u"kelo.app.debug=true"_s);
        environment.insert(u"QT_FORCE_STDERR_LOGGING"_s, u"1"_s);
        process_.setProcessEnvironment(environment);
        process_.setProgram(QCoreApplication::applicationDirPath() + "/kelo"_L1);
        process_.setStandardOutputFile(QProcess::nullDevice());
        process_.setReadChannel(QProcess::StandardError);
    }
    ~Kelo()
    {
        process_.terminate();
        if (!process_.waitForFinished(patience))
            process_.kill();
    }

    /// Starts it and returns the seconds until its window has shown its first frame.
    double start()
    {
        const TimeSource &clock = TimeSource::system();
        const double before = clock.now();
        process_.start();
        QByteArray log;
        while (!log.contains("first frame")) {
            if (!process_.waitForReadyRead(patience)) // standard error is the one channel left
                qFatal("Kelo showed no window: %s", log.constData());
            log += process_.readAllStandardError();
        }
        return clock.now() - before;
    }

    [[nodiscard]] qint64 pid() const { return process_.processId(); }

private:
    QTemporaryDir home_;
    QProcess process_;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    bench::printMachine();

    double best = std::numeric_limits<double>::max();
    double worst = 0;
    for (int start = 0; start < starts; ++start) {
        const double seconds = Kelo().start();
        best = std::min(best, seconds);
        worst = start == 0 ? 0 : std::max(worst, seconds); // the first one warms the caches
    }
    bench::print(u"start to first frame, best of %1"_s.arg(starts), best * 1000, u"ms"_s);
    bench::print(u"start to first frame, worst when warm"_s, worst * 1000, u"ms"_s);

    Kelo kelo;
    kelo.start();
    bench::print(u"processor time of a start"_s, cpuTime(kelo.pid()) * 1000, u"ms"_s);
    QThread::sleep(settling.count());
    bench::print(u"memory (PSS) of the idle console"_s, proportionalMemory(kelo.pid()), u"MiB"_s);
    const double before = cpuTime(kelo.pid());
    QThread::sleep(idling.count());
    const double share = (cpuTime(kelo.pid()) - before) / std::chrono::seconds(idling).count();
    bench::print(u"processor time of the idle console over 10 s"_s, share * 100, u"% of a core"_s);
}
