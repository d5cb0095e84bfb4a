#include "support/scripted_engine.h"

#include "support/files.h"

using namespace Qt::StringLiterals;

namespace kelo::test {

ScriptedEngine::ScriptedEngine(const QString &folder)
    : script_(folder + "/script"_L1)
{
    play({});
}

void ScriptedEngine::play(const QByteArray &script) const
{
    writeFile(script_, script);
}

QString ScriptedEngine::payload()
{
    return QStringLiteral(KELO_SCRIPTED_PAYLOAD);
}

QProcessEnvironment ScriptedEngine::environment() const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"KELO_SCRIPT"_s, script_);
    return environment;
}

qsizetype ScriptedEngine::runs() const
{
    return notes("runs").size();
}

qint64 ScriptedEngine::pid() const
{
    return notes("pid").toLongLong();
}

QByteArray ScriptedEngine::input() const
{
    return notes("input");
}

QString ScriptedEngine::workingDirectory() const
{
    return QString::fromUtf8(notes("cwd"));
}

QByteArrayList ScriptedEngine::environmentSeen() const
{
    return notes("environment").split('\n');
}

QByteArray ScriptedEngine::notes(const char *kind) const
{
    return readFile(script_ + u'.' + QLatin1StringView(kind));
}

} // namespace kelo::test
