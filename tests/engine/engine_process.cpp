#include "engine_process.h"

#include "support/files.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

EngineProcess::EngineProcess(bool known)
{
    if (known)
        write(u"profile.json"_s, R"({"assistant": "Kelo", "user": "Ann"})");
}

QString EngineProcess::write(const QString &name, const QByteArray &bytes) const
{
    kelo::test::writeFile(path(name), bytes);
    return path(name);
}

void EngineProcess::start(const QStringList &arguments, const QMap<QString, QString> &settings)
{
    lines.clear();
    seen = 0;
    process = std::make_unique<QProcess>();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"KELO_SOUND"_s, u"silent"_s);
    environment.insert(u"KELO_HOME"_s, folder.path());
    environment.insert(u"HOME"_s, folder.path());
    environment.insert(u"PATH"_s, folder.path()); // no desktop to open pages with
    environment.insert(u"KELO_PIANO"_s, path(u"Stage Piano"_s));
    for (const auto &[name, value] : settings.asKeyValueRange())
        environment.insert(name, value);
    process->setProcessEnvironment(environment);
    process->setStandardErrorFile(path(u"errors"_s));
    process->start(QStringLiteral(ENGINE_PROGRAM), arguments);
    QVERIFY(process->waitForStarted());
}

QString EngineProcess::end()
{
    pullOut();
    if (process->state() == QProcess::Running) {
        process->write("q");
        if (!process->waitForFinished(3000))
            return u"it does not quit"_s;
    }
    read();
    for (const QString &line : std::as_const(lines)) {
        if (!line.startsWith(u'@'))
            return u"no line of the protocol: "_s + line;
    }
    if (process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0)
        return {};
    return u"it crashed: "_s + QString::fromUtf8(kelo::test::readFile(path(u"errors"_s)));
}

void EngineProcess::send(const QByteArray &bytes) const
{
    process->write(bytes);
    process->waitForBytesWritten();
}

void EngineProcess::read()
{
    while (process->canReadLine())
        lines << QString::fromUtf8(process->readLine()).chopped(1);
}

QString EngineProcess::waitFor(const QString &pattern, int seconds)
{
    const QRegularExpression wanted(u"^@"_s + pattern + u'$');
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        read();
        for (; seen < lines.size(); ++seen) {
            if (wanted.match(lines[seen]).hasMatch())
                return lines[seen++].mid(1);
        }
        if (timer.hasExpired(seconds * 1000LL))
            return {};
        process->waitForReadyRead(20);
    }
}

QString EngineProcess::ask(const QByteArray &request)
{
    read();
    seen = lines.size();
    send("~say " + request + '\n');
    return waitFor(u"say .*"_s).mid(4);
}

void EngineProcess::begin(bool withPiano)
{
    if (withPiano)
        plugIn();
    start();
    QVERIFY(!waitFor(u"say .*"_s).isEmpty());
    send("\n");
}

void EngineProcess::expect(const QByteArray &bytes, const QStringList &patterns)
{
    send(bytes);
    for (const QString &pattern : patterns)
        QVERIFY2(!waitFor(pattern).isEmpty(), qPrintable(pattern));
}

QJsonObject EngineProcess::profile() const
{
    return QJsonDocument::fromJson(kelo::test::readFile(path(u"profile.json"_s))).object();
}

void EngineProcess::plugIn()
{
    const QByteArray name = path(u"Stage Piano"_s).toUtf8();
    QCOMPARE(mkfifo(name, 0600), 0);
    piano = open(name, O_RDWR | O_NONBLOCK);
    QVERIFY(piano >= 0);
}

void EngineProcess::pullOut()
{
    if (piano >= 0)
        close(std::exchange(piano, -1));
    QFile::remove(path(u"Stage Piano"_s));
}

void EngineProcess::play(int pitch, int velocity) const
{
    const std::array<char, 3> bytes{'\x90', static_cast<char>(pitch), static_cast<char>(velocity)};
    QCOMPARE(::write(piano, bytes.data(), bytes.size()), 3);
}

void EngineProcess::tap(const QList<int> &pitches)
{
    for (const int pitch : pitches) {
        play(pitch);
        play(pitch, 0);
    }
}

void EngineTest::cleanup()
{
    const QString fault = engine->end();
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    engine.reset();
}
