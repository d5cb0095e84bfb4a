#include "link/bridge.h"

#include "link/whole_file.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

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
    if (const auto problem = writeWhole(folder + name, *shipped))
        qCWarning(linkLog) << "could not install" << folder + name << *problem;
}

} // namespace kelo
