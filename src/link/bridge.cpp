#include "link/bridge.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>

#include <optional>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

namespace {

std::optional<QByteArray> contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

} // namespace

void installBridge(const QString &payload, const QString &baseDir)
{
    const QString name = u"/ostrell_bridge.lua"_s;
    const auto shipped = contents(payload + name);
    if (!shipped)
        return;
    const QString folder = baseDir + "/reaper"_L1;
    QDir().mkpath(folder);
    if (contents(folder + name) == shipped)
        return;
    QSaveFile file(folder + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(*shipped) < 0 || !file.commit())
        qCWarning(linkLog) << "could not install" << file.fileName() << file.errorString();
}

} // namespace kelo
