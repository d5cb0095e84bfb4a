#include "app/launch.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace kelo {

bool markedByLogin(const QByteArray &autostartId, const QByteArray &cgroup)
{
    // As the session names the unit of app.kelo.assistant.desktop.
    static const QByteArray unit = "/app-app.kelo.assistant@autostart.service";
    for (const QByteArray &line : cgroup.split('\n')) {
        if (line.endsWith(unit) || line.contains(unit + '/'))
            return true;
    }
    return !autostartId.isEmpty();
}

bool takeLoginMarks()
{
    constexpr const char *variable = "DESKTOP_AUTOSTART_ID";
    const QByteArray id = qgetenv(variable);
    qunsetenv(variable);
    QFile groups(u"/proc/self/cgroup"_s);
    return markedByLogin(id, groups.open(QIODevice::ReadOnly) ? groups.readAll() : QByteArray());
}

void startAgain(bool hidden)
{
    QProcess::startDetached(u"/bin/sh"_s,
        {u"-c"_s, u"sleep 1.5; exec \"$0\" \"$1\""_s, QCoreApplication::applicationFilePath(),
            hidden ? u"--hidden"_s : u"--show"_s});
}

} // namespace kelo
