#include "link/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QProcessEnvironment>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

QString dataDirectory(const QProcessEnvironment &environment)
{
    const QString wanted = environment.value(u"KELO_HOME"_s);
    // Relative, it would mean another place to the engine, which runs inside it.
    QString directory = QDir::current().absoluteFilePath(wanted);
    const bool readable = !wanted.contains(QChar::ReplacementCharacter);
    if (!environment.contains(u"KELO_HOME"_s) || !readable) {
        directory =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Kelo"_L1;
    }
    if (!readable)
        qCWarning(linkLog) << "KELO_HOME is not UTF-8: using" << directory;
    if (QDir().mkpath(directory) || (environment.contains(u"KELO_HOME"_s) && readable))
        return directory;
    const QString untilLogout = environment.value(u"XDG_RUNTIME_DIR"_s) + "/Kelo"_L1;
    if (!environment.contains(u"XDG_RUNTIME_DIR"_s) || !QDir().mkpath(untilLogout))
        return directory;
    qCWarning(linkLog) << "nothing can be kept in" << directory << "- using" << untilLogout;
    return untilLogout;
}

const QString &baseDir()
{
    static const QString directory = dataDirectory(QProcessEnvironment::systemEnvironment());
    return directory;
}

QVariantMap savedProfile(const QString &directory)
{
    QFile file(directory + "/profile.json"_L1);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object().toVariantMap();
}

QString songsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::MusicLocation) + "/Kelo Songs"_L1;
}

QString payloadDirectory(const QProcessEnvironment &environment)
{
    if (environment.contains(u"KELO_PAYLOAD"_s))
        return environment.value(u"KELO_PAYLOAD"_s);
    const QString beside = QCoreApplication::applicationDirPath();
    const QString installed = QDir::cleanPath(beside + "/../libexec/kelo/payload"_L1);
    return QDir(installed).exists() ? installed : beside + "/payload"_L1;
}

} // namespace kelo
