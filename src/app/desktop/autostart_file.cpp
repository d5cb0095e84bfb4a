#include "app/desktop/autostart_file.h"

#include "link/whole_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(appLog)

namespace kelo {

namespace {

constexpr qint64 longestEntry = 65'536; // bytes; what is longer was not written for us

/// One argument of an Exec line. Three layers: a percent sign would begin a field code, the
/// quotes want a backslash before what means something inside them, and then the line is a
/// string in which a backslash is written as two.
QString quoted(QString argument)
{
    argument.replace(u'%', u"%%"_s);
    for (const QChar special : {u'\\', u'"', u'`', u'$'})
        argument.replace(special, QString(u'\\') + special);
    argument.replace(u'\\', u"\\\\"_s);
    argument.replace(u'\n', u"\\n"_s).replace(u'\t', u"\\t"_s).replace(u'\r', u"\\r"_s);
    return u'"' + argument + u'"';
}

/// The command of the Exec line. Desktops look for the program before they read its percent
/// signs, and the name of a program may not hold an equals sign; a shell's argument may hold both.
QString command(const QString &executable)
{
    const bool awkward = executable.contains(u'%') || executable.contains(u'=');
    if (awkward)
        return u"/bin/sh -c "_s + quoted(u"exec \"$0\" --hidden"_s) + u' ' + quoted(executable);
    return quoted(executable) + u" --hidden"_s;
}

/// A value of the entry's own group; empty when it is not there.
QByteArray value(const QByteArray &entry, const QByteArray &key)
{
    bool inside = false;
    for (QByteArrayView line : entry.split('\n')) {
        line = line.trimmed();
        if (line.startsWith('['))
            inside = line == "[Desktop Entry]";
        const qsizetype equals = line.indexOf('=');
        if (inside && equals > 0 && line.first(equals).trimmed() == key)
            return line.sliced(equals + 1).trimmed().toByteArray();
    }
    return {};
}

} // namespace

AutostartFile::AutostartFile(const QString &configuration, QString executable)
    : path_(configuration + u"/autostart/app.kelo.assistant.desktop"_s)
    , executable_(std::move(executable))
{
}

AutostartFile::AutostartFile()
    : AutostartFile(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
        QCoreApplication::applicationFilePath())
{
}

bool AutostartFile::on() const
{
    QFile file(path_);
    if (!QFileInfo(path_).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray entry = file.read(longestEntry);
    return value(entry, "Hidden") != "true" && value(entry, "X-GNOME-Autostart-enabled") != "false";
}

bool AutostartFile::set(bool on)
{
    const bool done = on ? write() : !QFileInfo(path_).isFile() || QFile::remove(path_);
    Q_EMIT changed();
    return done;
}

bool AutostartFile::write() const
{
    QDir().mkpath(QFileInfo(path_).path());
    const auto problem = writeWhole(path_, entry());
    if (problem)
        qCWarning(appLog) << "can't write" << path_ << *problem;
    return !problem;
}

QByteArray AutostartFile::entry() const
{
    const QString text = u"[Desktop Entry]\n"
                         "Type=Application\n"
                         "Name=Kelo\n"
                         "Comment=Listens for you from the moment you log in\n"
                         "Icon=app.kelo.assistant\n"
                         "Exec=%1\n"
                         "Terminal=false\n"
                         "StartupNotify=false\n"
                         "X-GNOME-Autostart-enabled=true\n"_s;
    return text.arg(command(executable_)).toUtf8();
}

} // namespace kelo
