#include "support/scripted_engine.h"
#include "voice/recognition/recogniser.h"
#include "voice/virtual_microphone.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::test;

/// From a voice at the microphone through the whole program to its engine.
class HearingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hearsForItsEngine()
    {
        if (const QString missing = VirtualMicrophone::missing(); !missing.isEmpty())
            QSKIP(qPrintable(u"HEARING IS NOT TESTED, please install: "_s + missing));
        if (!kelo::Recogniser::ofThisSystem())
            QSKIP("HEARING IS NOT TESTED, please install: libpocketsphinx-dev");
        VirtualMicrophone microphone;
        QVERIFY(microphone.start());
        const QTemporaryDir folder;
        const QString log = folder.filePath(u"data/voice-log.txt"_s);
        writeFile(log, {});
        writeFile(folder.filePath(u"config/Kelo/Kelo.conf"_s), "[General]\nvoice=true\n");
        const ScriptedEngine engine(folder.path());
        engine.play("line @mode idle\nserve");
        auto environment = engine.environment();
        environment.insert(u"KELO_HOME"_s, folder.filePath(u"data"_s));
        environment.insert(u"KELO_PAYLOAD"_s, ScriptedEngine::payload());
        environment.insert(u"XDG_CONFIG_HOME"_s, folder.filePath(u"config"_s));
        // The graphics driver is unloaded before leaks are counted and its own have no names then.
        environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QStringLiteral(KELO_PROGRAM), QStringList());
        QTRY_VERIFY_WITH_TIMEOUT(
            readFile(log).contains("the recogniser has been taught the name"), 30'000);
        for (int said = 0; said < 2; ++said) { // one session takes the other's place
            const qsizetype before = engine.input().size();
            const auto sent = [&] { return engine.input().sliced(before); };
            QVERIFY(microphone.speak(u"Kelo, play me something. nice and slow"_s));
            QTRY_VERIFY_WITH_TIMEOUT(sent().contains("~ear 1 "), 20'000);
            QTest::qWait(1500);
            const QByteArray input = sent();
            QVERIFY2(input.indexOf("~ear 0 ") >= 0 && input.count("~ear 1 ") == 1
                    && input.indexOf("Kelo", input.indexOf("~ear 1 ")) > 0,
                input);
            QVERIFY(input.indexOf("~ear 0 ") < input.indexOf("~ear 1 "));
            QVERIFY(input.count("~lvl ") > input.count("~lvl 0.0000") + 5);
        }
        program.terminate();
        QVERIFY(program.waitForFinished());
    }
};

QTEST_GUILESS_MAIN(HearingTest)
#include "hearing_test.moc"
