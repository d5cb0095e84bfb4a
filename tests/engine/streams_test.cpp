#include "engine_process.h"
#include "midi_bytes.h"
#include "support/table.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using kelo::test::Table;

/// Drives the engine itself as a display does: by its standard streams.
class StreamsTest : public EngineTest {
    Q_OBJECT

private Q_SLOTS:
    void greets()
    {
        expect({},
            {u"name Kelo\\|Ann"_s, u"voice .+"_s, u"bandstyle .+"_s, u"hands both"_s,
                u"mode idle"_s, u"vocab .+"_s, u"kbd"_s, u"buttons"_s, u"now \\d\\d:\\d\\d"_s});
        const QString greeting = waitFor(u"say Good .*, Ann\\..*"_s);
        QVERIFY(greeting.contains(u"silence"_s)); // and says that nobody can hear it
        QVERIFY(!waitFor(u"word 0 4 \\d+"_s).isEmpty());
    }

    void saysWhereNothingIsKept()
    {
        QVERIFY(engine->end().isEmpty());
        const QString folder = engine->path(u"Kelo"_s);
        for (const QMap<QString, QString> &home :
            {QMap<QString, QString>{}, {{u"KELO_HOME"_s, u"/proc/nowhere"_s}},
                {{u"KELO_HOME"_s, folder}, {u"XDG_RUNTIME_DIR"_s, engine->path(u""_s)}}}) {
            engine->start({}, home);
            const bool kept = home.isEmpty();
            QCOMPARE(waitFor(u"say .*"_s).contains(u"won't be kept"_s), !kept);
            send("~speak Your name?\n~setup Ann|Kelo||C||true||false\n"); // interrupts it
            QCOMPARE(waitFor(u"say Welcome.*"_s).contains(u"won't be kept"_s), !kept);
            QVERIFY(engine->end().isEmpty());
        }
    }

    void speaksWordByWord()
    {
        waitFor(u"now .*"_s);
        const QString text = u"Caf\u00e9 \U0001F3B5 is 35 steps."_s;
        send("~speak " + text.toUtf8() + '\n');
        QCOMPARE(waitFor(u"say .*steps\\."_s), u"say "_s + text);
        QVERIFY(!waitFor(u"spec 2 0 ([a-p]{16})+"_s).isEmpty());
        QVERIFY(!waitFor(u"start"_s).isEmpty());
        QStringList words;
        QElapsedTimer spoken;
        spoken.start();
        int expected = 0;
        while (words.size() < 5) {
            const QStringList word = waitFor(u"word \\d+ \\d+ \\d+"_s).split(u' ');
            QCOMPARE(word.size(), 4);
            words << text.mid(word[1].toInt(), word[2].toInt());
            QVERIFY(word[3].toInt() > 20);
            QVERIFY2(
                qAbs(spoken.elapsed() - expected) < 300, "a word that is not told as it sounds");
            expected += word[3].toInt();
        }
        QCOMPARE(
            words, QStringList({u"Caf\u00e9"_s, u"\U0001F3B5"_s, u"is"_s, u"35"_s, u"steps"_s}));
        QVERIFY(!waitFor(u"done"_s).isEmpty());
        int frames = 0;
        for (const QString &line : engine->lines.filter(u"@spec 2 "_s)) {
            if (line.endsWith(u"new"_s))
                continue;
            QCOMPARE(line.section(u' ', 2, 2).toInt(), frames); // no gap, no overlap
            frames += static_cast<int>(line.section(u' ', 3).size() / 16);
        }
        QVERIFY(qAbs(frames - static_cast<int>(spoken.elapsed() * 60 / 1000)) < 15);
    }

    void aCommandInterruptsSpeech()
    {
        expect("h", {u"say Left and right.*"_s, u"word .*"_s});
        send("\n");
        QVERIFY(!waitFor(u"done"_s, 1).isEmpty());
        expect("~say what time is it\n", {u"say It is \\d\\d:\\d\\d\\."_s});
        send("~say fly me to the moon\n");
        QVERIFY(!waitFor(u"say I didn't understand.*"_s, 1).isEmpty());
        QVERIFY(!waitFor(u"done"_s).isEmpty());
    }

    void playsAFileThroughReturnToItsEnd()
    {
        expect("~play " + write(u"A scale.mid"_s, midi::scale(3)).toUtf8() + '\n',
            {u"say A scale\\."_s, u"rollnew A scale"_s});
        QVERIFY(waitFor(u"rolln .*"_s).startsWith(u"rolln 0.0000,0.5000,60,80,0;0.5000,"_s));
        QElapsedTimer timer;
        QCOMPARE(waitFor(u"rollstart .*"_s), QString(u"rollstart 3.0000 1.5000"_s));
        timer.start();
        QVERIFY(!waitFor(u"out 60 80"_s).isEmpty());
        QVERIFY(qAbs(timer.elapsed() - 3000) < 300);
        QTest::qWait(250);
        send("\n");
        for (const QString &line : {u"out 60 0"_s, u"rollstop"_s, u"paused 1"_s})
            QVERIFY2(!waitFor(line, 1).isEmpty(), qPrintable(line));
        QVERIFY(waitFor(u"out .*"_s, 1).isEmpty());
        send("\n");
        for (const QString &line : {u"paused 0"_s, u"rollnew A scale"_s, u"rollstart -0\\..*"_s,
                 u"out 61 80"_s, u"out 62 80"_s, u"out 62 0"_s, u"rollstop"_s})
            QVERIFY2(!waitFor(line, 3).isEmpty(), qPrintable(line));
    }

    void refusesWhatIsNoMusic_data()
    {
        const Table<QString, QString> row{"path", "answer"};
        const QString notMidi = u"That isn't a MIDI file.*"_s;
        row("missing", u"/nowhere/at all.mid"_s, notMidi);
        row("nothing named", u""_s, notMidi);
        row("a folder", u"/tmp"_s, notMidi);
        row("endless", u"/dev/zero"_s, notMidi);
        row("no notes", u"empty.mid"_s, u"There are no notes.*"_s);
    }

    void refusesWhatIsNoMusic()
    {
        QFETCH(QString, path);
        QFETCH(QString, answer);
        write(u"empty.mid"_s, midi::join({midi::header(0, 1, 96), midi::track(midi::end)}));
        const QString absolute = path.isEmpty() ? path : engine->path(path);
        expect("~play " + absolute.toUtf8() + '\n', {u"say "_s + answer});
        QVERIFY(engine->lines.filter(u"@rollnew"_s).isEmpty());
    }

    void survivesNoise()
    {
        QByteArray noise;
        for (int i = 0; i < 200000; ++i)
            noise += static_cast<char>(i * 7919 % 251);
        noise.replace('q', 'w');
        send(noise + "\n\n~ear 0 kelo\n~lvl 0.5\n~\n~unheard of\n~speak \xff\xfe\n");
        QVERIFY(!waitFor(u"say \\?\\?"_s).isEmpty());
    }

    void quits_data()
    {
        const Table<QByteArray, bool> row{"last", "close"};
        row("when asked", "q", false);
        row("at the end of its input", {}, true);
        row("in the middle of a word and a command", "h~play", true);
    }

    void quits()
    {
        QFETCH(QByteArray, last);
        QFETCH(bool, close);
        QVERIFY(!waitFor(u"start"_s).isEmpty());
        send(last);
        if (close)
            engine->process->closeWriteChannel();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(engine->process->waitForFinished(3000));
        QVERIFY(timer.elapsed() < 1000);
    }

private:
    void init() override
    {
        EngineTest::init();
        engine->start();
    }
    QString waitFor(const QString &pattern, int seconds = 10)
    {
        return engine->waitFor(pattern, seconds);
    }
    void send(const QByteArray &bytes) { engine->send(bytes); }

    QString write(const QString &name, const midi::Bytes &bytes)
    {
        return engine->write(name,
            QByteArray(reinterpret_cast<const char *>(bytes.data()),
                static_cast<qsizetype>(bytes.size())));
    }
};

QTEST_GUILESS_MAIN(StreamsTest)
#include "streams_test.moc"
