#include "support/scripted_engine.h"
#include "support/table.h"
#include "voice/recognition/recogniser.h"
#include "voice/virtual_microphone.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// The program itself, from outside.
class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        QDir(folder_->path()).mkdir(u"data"_s);
        engine_ = std::make_unique<ScriptedEngine>(folder_->path());
    }

    void answersWithoutADisplay_data()
    {
        const Table<QStringList, int, QByteArray> row{"arguments", "status", "begins"};
        row("help", {u"--help"_s}, 0, "Usage: ");
        row("version", {u"--version"_s}, 0, "kelo ");
        row("a window", {}, 1, {});
    }

    void answersWithoutADisplay()
    {
        QFETCH(const QStringList, arguments);
        QProcess program;
        auto bare = environment();
        for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            bare.remove(name);
        program.setProcessEnvironment(bare);
        start(program, arguments);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QTEST(program.exitCode(), "status");
        QFETCH(const QByteArray, begins);
        QVERIFY(program.readAllStandardOutput().startsWith(begins));
    }

    void endsInOrderWhenTheSystemAsks_data()
    {
        const Table<int> row{"signal"};
        row("SIGTERM", SIGTERM);
        row("SIGINT", SIGINT);
        row("SIGHUP", SIGHUP);
    }

    void endsInOrderWhenTheSystemAsks()
    {
        QFETCH(const int, signal);
        engine_->play("line @mode idle\nserve");
        QProcess program;
        start(program, {});
        QTRY_COMPARE_WITH_TIMEOUT(engine_->runs(), 1, 20'000);
        QVERIFY(::kill(static_cast<pid_t>(program.processId()), signal) == 0);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(engine_->input(), QByteArray("q"));
    }

    void secondStartRaisesTheFirst()
    {
        engine_->play("line @mode idle\nserve");
        QProcess first;
        start(first, {u"--hidden"_s});
        QTRY_COMPARE_WITH_TIMEOUT(engine_->runs(), 1, 20'000);
        QProcess second;
        start(second, {});
        QVERIFY(second.waitForFinished());
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(engine_->runs(), 1);
        QCOMPARE(first.state(), QProcess::Running);
        QProcess search;
        search.start(
            u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, u"^Kelo$"_s});
        QVERIFY2(search.waitForFinished(10'000), "the first one's window did not come up");
        first.terminate();
        QVERIFY(first.waitForFinished());
    }

    void endsWithItsEngineWhileHidden()
    {
        engine_->play("line @mode idle\nsleep 200\nexit 0");
        QProcess program;
        start(program, {u"--hidden"_s});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
    }

    void staysUpWithoutAnything()
    {
        auto bare = environment();
        bare.insert(u"KELO_PAYLOAD"_s, u"/nowhere"_s);
        bare.insert(u"KELO_HOME"_s, u"/dev/null/nowhere"_s);
        bare.insert(u"HOME"_s, u"/dev/null"_s);
        bare.insert(u"XDG_CONFIG_HOME"_s, u"/dev/null"_s);
        bare.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/dev/null"_s);
        QProcess program;
        program.setProcessEnvironment(bare);
        start(program, {});
        QVERIFY2(!program.waitForFinished(3000), "it ended by itself");
        program.terminate();
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
    }

    void hearsForItsEngine()
    {
        if (const QString missing = VirtualMicrophone::missing(); !missing.isEmpty())
            QSKIP(qPrintable(u"HEARING IS NOT TESTED, please install: "_s + missing));
        if (!Recogniser::ofThisSystem())
            QSKIP("HEARING IS NOT TESTED, please install: libpocketsphinx-dev");
        VirtualMicrophone microphone;
        QVERIFY(microphone.start());
        writeFile(folder_->filePath(u"data/voice-log.txt"_s), {});
        writeFile(folder_->filePath(u"config/Kelo/Kelo.conf"_s), "[General]\nvoice=true\n");
        engine_->play("line @mode idle\nserve");
        QProcess program;
        start(program, {});
        QTRY_VERIFY_WITH_TIMEOUT(readFile(folder_->filePath(u"data/voice-log.txt"_s))
                                     .contains("the recogniser has been taught the name"),
            30'000);
        QTRY_VERIFY(engine_->input().count("~lvl ") > 5);
        QVERIFY(microphone.speak(u"Kelo, play me something"_s));
        QTRY_VERIFY_WITH_TIMEOUT(engine_->input().contains("~ear 1 "), 20'000);
        const QByteArray input = engine_->input();
        QVERIFY2(input.contains("~ear 0 ") && input.indexOf("~ear 0 ") < input.indexOf("~ear 1 "),
            input);
        program.terminate();
        QVERIFY(program.waitForFinished());
    }

    void drawsTheSamePicturesEachTime_data()
    {
        const Table<QString> row{"screens"};
        for (const char *screens : {"console-playing", "console-update", "caption-fading",
                 "visualiser-duet", "question-3"})
            row(screens, QString::fromLatin1(screens));
    }

    void drawsTheSamePicturesEachTime()
    {
        QFETCH(const QString, screens);
        QDir pictures[2]{folder_->filePath(u"one"_s), folder_->filePath(u"two"_s)};
        for (const QDir &target : pictures) {
            QProcess program;
            start(program, {u"--snapshot"_s, target.path(), screens});
            QVERIFY(program.waitForFinished(60'000));
            QCOMPARE(program.exitCode(), 0);
        }
        const QStringList names = pictures[0].entryList(QDir::Files);
        QVERIFY(names.size() >= 2);
        QCOMPARE(pictures[1].entryList(QDir::Files), names);
        for (const QString &name : names) {
            const QByteArray picture = readFile(pictures[0].filePath(name));
            QVERIFY2(!picture.isEmpty() && picture == readFile(pictures[1].filePath(name)),
                qPrintable(name));
        }
    }

private:
    QProcessEnvironment environment() const
    {
        auto environment = engine_->environment();
        environment.insert(u"KELO_HOME"_s, folder_->filePath(u"data"_s));
        environment.insert(u"KELO_PAYLOAD"_s, ScriptedEngine::payload());
        environment.insert(u"XDG_CONFIG_HOME"_s, folder_->filePath(u"config"_s));
        // The graphics driver is unloaded before leaks are counted and its own have no names then.
        // Leaks of ours are found where the same window runs inside a test.
        environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        return environment;
    }

    void start(QProcess &program, const QStringList &arguments) const
    {
        program.setProgram(QStringLiteral(KELO_PROGRAM));
        program.setArguments(arguments);
        if (program.processEnvironment().isEmpty())
            program.setProcessEnvironment(environment());
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start();
        QVERIFY(program.waitForStarted());
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<ScriptedEngine> engine_;
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "program_test.moc"
