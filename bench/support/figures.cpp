#include "support/figures.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QSysInfo>
#include <QTextStream>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo::bench {

namespace {

constexpr int runs = 5;

/// The value after `key` in a file of "key : value" lines.
QString entry(const QString &path, QLatin1StringView key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    const auto line =
        std::ranges::find_if(lines, [key](const QString &l) { return l.startsWith(key); });
    return line == lines.end() ? QString() : line->section(u':', 1).trimmed();
}

} // namespace

void printMachine()
{
    QTextStream(stdout) << entry(u"/proc/cpuinfo"_s, "model name"_L1) << ", "
                        << QThread::idealThreadCount() << " cores, "
                        << QSysInfo::prettyProductName() << ", Qt "
                        << QLibraryInfo::version().toString() << ", "
#ifdef QT_NO_DEBUG
                        << "release"
#else
                        << "debug"
#endif
                        << " build\n";
}

void print(const QString &what, double figure, const QString &unit)
{
    const int decimals = figure < 100 ? 2 : 0;
    QTextStream(stdout) << "  " << what.leftJustified(44)
                        << QLocale::c().toString(figure, 'f', decimals).rightJustified(14) << "  "
                        << unit << '\n';
}

double perSecond(double count, const std::function<void()> &work)
{
    qint64 best = std::numeric_limits<qint64>::max();
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer time;
        time.start();
        work();
        best = std::min(best, time.nsecsElapsed());
    }
    return count * 1e9 / static_cast<double>(std::max<qint64>(best, 1));
}

double privateMemory(const QString &process)
{
    return entry(u"/proc/%1/status"_s.arg(process), "RssAnon"_L1).section(u' ', 0, 0).toDouble()
        * 1024;
}

} // namespace kelo::bench
