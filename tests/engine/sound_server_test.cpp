#include "engine_process.h"
#include "support/files.h"

#include <QStandardPaths>
#include <QTest>

#include <cmath>
#include <csignal>

using namespace Qt::StringLiterals;
using kelo::test::readFile;

/// A sound server that starts late, ends, comes back and hangs; the engine minds none of it.
class SoundServerTest : public EngineTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(u"pulseaudio"_s).isEmpty())
            QSKIP("needs pulseaudio");
    }

    void soundComesBackAndNobodyWaits()
    {
        startsWithoutSound();
        for (int round = 0; round < 2; ++round) {
            answersAtOnce();
            serve();
            soundComesBack();
            answersAtOnce();
            isHeardOnBothSides();
            if (round == 0) {
                runsDry();
                end();
                QTest::qWait(3000); // until it has noticed
            }
        }
        kill(static_cast<pid_t>(server.processId()), SIGSTOP);
        QTest::qWait(3000);
        answersAtOnce();
        QCOMPARE(engine->end(), QString());
        kill(static_cast<pid_t>(server.processId()), SIGCONT);
        end();
    }

    void serverThatHangsAtTheStartKeepsNobodyWaiting()
    {
        serve();
        QTRY_VERIFY(QFile::exists(engine->path(u"socket"_s)));
        kill(static_cast<pid_t>(server.processId()), SIGSTOP);
        startsWithoutSound({});
        answersAtOnce();
        kill(static_cast<pid_t>(server.processId()), SIGCONT);
        soundComesBack();
        QVERIFY(
            readFile(engine->path(u"errors"_s)).contains("plays by pulseaudio")); // not around it
        QCOMPARE(engine->end(), QString());
        end();
    }

private:
    void startsWithoutSound(const QString &driver = u"pulseaudio"_s)
    {
        engine->start({},
            {{u"KELO_SOUND"_s, driver},
                {u"PULSE_SERVER"_s, u"unix:"_s + engine->path(u"socket"_s)}});
        QVERIFY(engine->waitFor(u"say Good .*"_s).contains(u"no way to make sound"_s));
    }

    void soundComesBack() { QVERIFY(!engine->waitFor(u"say I have sound now\\."_s).isEmpty()); }

    /// More sound is on its way after that, and the next start will know.
    void runsDry()
    {
        const auto pid = static_cast<pid_t>(engine->process->processId());
        QTest::qWait(600); // a growth just before would have to show what it is worth first
        kill(pid, SIGSTOP);
        QTest::qWait(200);
        kill(pid, SIGCONT);
        QTRY_VERIFY(QFile::exists(engine->path(u"sound.json"_s)));
    }

    void serve()
    {
        server.setStandardErrorFile(QProcess::nullDevice());
        server.start(u"pulseaudio"_s,
            {u"-n"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--disable-shm=yes"_s,
                u"--exit-idle-time=-1"_s, u"-L"_s,
                u"module-native-protocol-unix auth-anonymous=1 socket="_s
                    + engine->path(u"socket"_s),
                u"-L"_s, u"module-null-sink"_s});
        QVERIFY(server.waitForStarted());
    }

    void end()
    {
        server.kill();
        server.waitForFinished();
        QFile::remove(engine->path(u"socket"_s));
    }

    void answersAtOnce()
    {
        engine->send("~say what time is it\n");
        QVERIFY(!engine->waitFor(u"say It is .*"_s, 1).isEmpty());
        QVERIFY(!engine->waitFor(u"done"_s, 5).isEmpty());
    }

    void isHeardOnBothSides()
    {
        QProcess ear;
        ear.start(u"parec"_s,
            {u"-s"_s, u"unix:"_s + engine->path(u"socket"_s), u"--raw"_s, u"--format=float32le"_s,
                u"--rate=44100"_s, u"-d"_s, u"@DEFAULT_MONITOR@"_s});
        QVERIFY(ear.waitForReadyRead());
        engine->send("~speak One two three.\n");
        QByteArray heard;
        const auto loud = [&] {
            heard += ear.readAllStandardOutput();
            const auto *sides = reinterpret_cast<const float *>(heard.constData());
            qsizetype count = 0;
            for (qsizetype i = 0; i + 1 < heard.size() / 4; i += 2)
                count += std::abs(sides[i]) > 0.05F && sides[i] == sides[i + 1];
            return count;
        };
        QTRY_VERIFY(loud() > 2000);
        ear.kill();
        ear.waitForFinished();
    }

    QProcess server;
};

QTEST_GUILESS_MAIN(SoundServerTest)
#include "sound_server_test.moc"
