#include "support/files.h"
#include "support/link_fixture.h"
#include "support/table.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTimer>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// A link over an engine whose script has come to "line @mode talk".
class Talking : public LinkFixture {
public:
    explicit Talking(const QByteArray &script)
    {
        start(script);
        QTRY_COMPARE(link().mode.get(), u"talk"_s);
    }
};

QStringList openFiles();
const QStringList openAtStart = openFiles(); // what who started the test gave it

QStringList openFiles()
{
    return QDir(u"/proc/self/fd"_s)
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

/// Runs, and is no mere entry in the table of processes.
bool lives(qint64 pid)
{
    const QByteArray stat = readFile(u"/proc/%1/stat"_s.arg(pid));
    return !stat.isEmpty() && !stat.mid(stat.lastIndexOf(')')).startsWith(") Z");
}

} // namespace

/// What may go wrong with a real child at the other end of two pipes.
class EngineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEngineThatCannotBeStarted()
    {
        for (const char *contents : {"",
                 "\x7f"
                 "ELF, but no program"}) {
            LinkFixture fixture;
            fixture.payload = fixture.folder.filePath(u"payload"_s);
            QDir().mkpath(fixture.payload);
            const QString program = fixture.payload + "/kelo-engine"_L1;
            if (*contents) {
                writeFile(program, contents);
                QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner);
            }
            const qsizetype before = openFiles().size();
            for (int i = 0; i < 3; ++i) {
                fixture->start();
                QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
            }
            QTest::qWait(0);
            QVERIFY(*contents || openFiles().size() == before);
            fixture->send(u"~bg\n"_s);
            fixture->stop();
            fixture.time.advance(1000);
            QCOMPARE(fixture->state.get(), u"OFFLINE"_s);

            QFile::remove(program);
            QVERIFY(QFile::link(fixture.engine.payload() + "/kelo-engine"_L1, program));
            fixture.engine.play("line @mode talk");
            fixture->restart();
            fixture.time.advance(0.4);
            QTRY_COMPARE(fixture->mode.get(), u"talk"_s);
        }
    }

    void oneThatCrashesIsForgivenThreeTimes_data()
    {
        const Table<QByteArray> row{"script"};
        row("ends at once", "exit 1");
        row("is killed", "crash");
        row("says a line each time", "line @mode talk\nexit 1");
        row("dies in half a line", "raw @say unfinish\nexit 255");
    }

    void oneThatCrashesIsForgivenThreeTimes()
    {
        QFETCH(QByteArray, script);
        LinkFixture fixture;
        fixture.start(script);
        for (int run = 1; run <= 3; ++run) {
            QTRY_COMPARE(fixture->state.get(), u"RESTARTING"_s);
            QCOMPARE(fixture.engine.runs(), run);
            fixture.say({"on 60 1"}); // is no excuse
            fixture.bring(u"RESTARTING"_s);
            fixture.time.advance(0.9);
            QCOMPARE(fixture->state.get(), u"RESTARTING"_s);
            fixture.time.advance(0.2);
            QCOMPARE(fixture->state.get(), u"STARTING"_s);
        }
        QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
        QVERIFY(fixture->down.isEmpty() && !fixture->speaking);
        fixture.time.advance(1000);
        QCOMPARE(fixture->state.get(), u"OFFLINE"_s);
        QCOMPARE(fixture.engine.runs(), 4);
    }

    void oldCrashesAreForgotten()
    {
        LinkFixture fixture;
        fixture.start("line @mode talk\nwait die\nexit 1");
        for (int run = 1; run <= 6; ++run) {
            QTRY_COMPARE(fixture->state.get(), u"ONLINE"_s);
            fixture.time.advance(39);
            fixture->send(u"die"_s);
            QTRY_COMPARE(fixture->state.get(), u"RESTARTING"_s);
            fixture.time.advance(1);
        }
    }

    void aCleanExit()
    {
        for (const bool hidden : {false, true}) {
            LinkFixture fixture;
            fixture.shell.hidden = hidden;
            fixture.start("line @say Bye\nline @on 60 1\nline @out 61 1\nexit 0");
            if (hidden) {
                QTRY_COMPARE(fixture.shell.calls, QStringList{u"quit"_s});
            } else {
                QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
                QCOMPARE(fixture->transcript->size(), 1);
                QVERIFY(!fixture->speaking && fixture->down.isEmpty() && fixture->played.isEmpty());
                QVERIFY(fixture.shell.calls.isEmpty());
            }
            fixture.time.advance(1000);
            QCOMPARE(fixture.engine.runs(), 1);
        }
    }

    void whatIsHeard_data()
    {
        const Table<QByteArray, QString> row{"script", "mode"};
        row("halves of lines", "raw @mode ta\nsleep 20\nraw lk\\n@mode te\nsleep 20\nraw ach\\n",
            u"teach"_s);
        row("other output is dropped", "line mode a\nline  @mode b\nraw \\n\\n", u"idle"_s);
        row("one marker is taken", "line @@mode a", u"idle"_s);
        row("bytes that are no text", R"(raw @mode \xff\xfea\xc3\n)", u"��a�"_s);
        row("a character cut in two", "raw @mode \\xe2\\x99\nsleep 20\nraw \\xad\\n", u"♭"_s);
        row("ten megabytes without a line feed", "bytes 10000000\nraw @mode a\\n", u"idle"_s);
        row("a line of ten megabytes", "raw @mode \nbytes 10000000\nraw \\n", u"idle"_s);
        row("a flood of diagnostics", "stderr 10000000\nline @mode a", u"a"_s);
        row("last words", "line @mode a\nline @hands end\nexit 1", u"a"_s);
    }

    void whatIsHeard()
    {
        QFETCH(QByteArray, script);
        LinkFixture fixture;
        fixture.start(script + "\nline @hands end");
        QTRY_COMPARE(fixture->hands.get(), u"end"_s);
        QTEST(fixture->mode.get(), "mode");
    }

    void aBurstKeepsItsOrder()
    {
        LinkFixture fixture;
        qint64 next = 0;
        connect(&fixture.link(), &Link::beatChanged, this, [&] {
            if (fixture->beat == next)
                ++next;
        });
        fixture.start("burst 100000 @beat #\nexit 0");
        QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
        QCOMPARE(next, 100'000);
    }

    void slowHandlingLeavesTheDisplayItsTurn()
    {
        LinkFixture fixture;
        connect(&fixture.link(), &Link::beatChanged, this, [] { ::usleep(500); });
        int turns = 0;
        QTimer display;
        connect(&display, &QTimer::timeout, this, [&] {
            if (fixture->beat > 0 && fixture->beat < 999)
                ++turns;
        });
        display.start(5);
        fixture.start("burst 1000 @beat #\nline @hands end");
        QTRY_COMPARE(fixture->hands.get(), u"end"_s);
        QVERIFY(turns >= 3);
    }

    void nothingIsHeardOfAnEngineThatCannotBeTrusted()
    {
        LinkFixture fixture;
        fixture.start("raw @spec 7 new\\n@spec 7 -1 aaaaaaaaaaaaaaaa\\n@mode after\\n\nexit 0");
        QTRY_COMPARE(fixture->state.get(), u"RESTARTING"_s);
        QCOMPARE(fixture->mode.get(), u"idle"_s);
    }

    void oneThatDoesNotReadIsEnded()
    {
        Talking fixture("line @mode talk\nsleep 30000");
        const QString megabyte = "~say "_L1 + QString(1 << 20, u'x') + u'\n';
        for (int i = 0; i < 7; ++i)
            fixture->send(megabyte);
        QTest::qWait(20);
        QCOMPARE(fixture->state.get(), u"ONLINE"_s);
        for (int i = 0; i < 3; ++i)
            fixture->send(megabyte);
        QTRY_COMPARE(fixture->state.get(), u"RESTARTING"_s);
    }

    void oneThatClosesItsInputIsNotHurtByWrites()
    {
        Talking fixture("deaf\nline @mode talk\nsleep 300\nline @mode teach\nsleep 30000");
        for (int i = 0; i < 20; ++i) {
            fixture->send(QString(1 << 20, u'x'));
            QTest::qWait(1);
        }
        QTRY_COMPARE(fixture->mode.get(), u"teach"_s);
        QCOMPARE(fixture->state.get(), u"ONLINE"_s);
    }

    void stoppingIsReportedLater()
    {
        Talking fixture("line @mode talk\nwait q\nline @mode farewell\nexit 1");
        QElapsedTimer took;
        took.start();
        fixture->stop();
        QVERIFY(took.elapsed() < 1000);
        QCOMPARE(fixture->mode.get(), u"talk"_s);
        QCOMPARE(fixture->state.get(), u"ONLINE"_s);
        QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
        QCOMPARE(fixture->mode.get(), u"farewell"_s);
        fixture->stop();
        fixture.time.advance(1000);
        QCOMPARE(fixture.engine.input(), "q"_ba);
        QCOMPARE(fixture.engine.runs(), 1);
    }

    void thereIsTimeToEnd_data()
    {
        const Table<QByteArray> row{"end"};
        row("the program ends", "stop");
        row("it ends at once", "");
        row("it starts anew", "relaunch stop");
        row("the engine starts anew", "restart");
        row("and the program ends then", "restart stop");
    }

    void thereIsTimeToEnd()
    {
        QFETCH(QByteArray, end);
        auto fixture = std::make_unique<Talking>("saves 800\nline @mode talk");
        const ScriptedEngine engine = fixture->engine;
        fixture->folder.setAutoRemove(false);
        if (end.startsWith("relaunch"))
            fixture->say({"relaunch"});
        if (end.startsWith("restart"))
            (*fixture)->restart();
        if (end.endsWith("stop"))
            (*fixture)->stop();
        QVERIFY(!engine.saved());
        if (!end.endsWith("restart"))
            fixture.reset();
        QTRY_VERIFY(engine.saved());
        QCOMPARE(engine.input(), QByteArray(end.isEmpty() ? "" : "q"));
    }

    void aStubbornOneIsKilledAtLast_data()
    {
        const Table<bool> row{"left"};
        row("after a restart", false);
        row("after the program's end", true);
    }

    void aStubbornOneIsKilledAtLast()
    {
        QFETCH(bool, left);
        auto fixture = std::make_unique<Talking>("stubborn\nline @mode talk\nbytes 1000000");
        const qint64 pid = fixture->engine.pid();
        QElapsedTimer took;
        took.start();
        left ? (*fixture)->stop() : (*fixture)->restart();
        QVERIFY(took.elapsed() >= 1400);
        if (left)
            fixture.reset();
        QTest::qWait(2000);
        QVERIFY(lives(pid));
        QTRY_VERIFY_WITH_TIMEOUT(!lives(pid), 8000);
    }

    void nothingOfOursReachesIt()
    {
        Talking fixture("line @mode talk");
        QStringList files = QString::fromLatin1(fixture.engine.files()).split(u' ');
        files.removeIf([](const QString &file) { return openAtStart.contains(file); });
        QVERIFY2(files.size() <= 1, qPrintable(files.join(u' '))); // with which it looks
        // What a terminal sends to our process group does not.
        const auto pid = static_cast<pid_t>(fixture.engine.pid());
        QCOMPARE(::getpgid(pid), pid);
    }

    void itsChildrenCostNothing()
    {
        Talking fixture("line @mode talk\nflood\nwait x\nexit 0");
        QTRY_VERIFY(fixture.engine.flooder() > 0);
        fixture->send(u"x"_s);
        QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
        QTRY_VERIFY(!lives(fixture.engine.flooder())); // its output leads nowhere
    }

    void restartingTwiceStartsOne()
    {
        Talking fixture("line @mode talk");
        for (int i = 0; i < 3; ++i) {
            fixture->restart();
            fixture.time.advance(0.3);
        }
        fixture.time.advance(1);
        QTRY_COMPARE(fixture->state.get(), u"ONLINE"_s);
        QCOMPARE(fixture.engine.runs(), 2);
    }

    void restartingIgnoresTheOldOne_data()
    {
        const Table<QByteArray> row{"script"};
        row("ends cleanly", "line @mode talk");
        row("ends with an error", "line @mode talk\nwait q\nexit 3");
        row("has crashed just before", "line @mode talk\ncrash");
    }

    void restartingIgnoresTheOldOne()
    {
        QFETCH(QByteArray, script);
        Talking fixture(script);
        if (script.endsWith("crash"))
            QTRY_COMPARE(fixture->state.get(), u"RESTARTING"_s);
        fixture.engine.play("line @mode teach");
        QStringList states;
        connect(&fixture.link(), &Link::stateChanged, this, [&] { states << fixture->state; });
        fixture->restart();
        fixture.time.advance(0.3);
        QTest::qWait(50);
        QCOMPARE(states, QStringList{});
        fixture.time.advance(0.2);
        QTRY_COMPARE(fixture->mode.get(), u"teach"_s);
        fixture.time.advance(1000);
        QTest::qWait(50);
        QCOMPARE(states, (QStringList{u"STARTING"_s, u"ONLINE"_s}));
        QCOMPARE(fixture.engine.runs(), 2);
    }

    void handlersMayRestart()
    {
        LinkFixture fixture;
        connect(
            &fixture.link(), &Link::modeChanged, this, [&] { fixture->restart(); },
            Qt::SingleShotConnection);
        fixture.start("raw @mode talk\\n@mode teach\\n");
        QTRY_COMPARE(fixture->mode.get(), u"talk"_s);
        QTest::qWait(50);
        QCOMPARE(fixture->mode.get(), u"talk"_s);
        fixture.time.advance(0.4);
        QTRY_COMPARE(fixture->mode.get(), u"teach"_s);
        QCOMPARE(fixture.engine.runs(), 2);
    }

    void relaunchingIsNoCrash()
    {
        LinkFixture fixture;
        fixture.start("line @relaunch\nwait q\nexit 1");
        QTRY_COMPARE(fixture.shell.calls, QStringList{u"relaunch"_s});
        fixture->stop();
        QTRY_COMPARE(fixture->state.get(), u"OFFLINE"_s);
        QCOMPARE(fixture.shell.calls, QStringList{u"relaunch"_s});
    }

    void theEngineInheritsWhatItNeeds()
    {
        qputenv("KELO_TEST_INHERITED", "as is");
        qputenv("TERM", "fancy");
        LinkFixture fixture;
        fixture.payload = QDir::current().relativeFilePath(fixture.payload);
        fixture.start("line @mode talk");
        QTRY_COMPARE(fixture->mode.get(), u"talk"_s);
        QCOMPARE(QDir(fixture.engine.workingDirectory()), QDir(fixture.dataDir));
        const QByteArrayList seen = fixture.engine.environmentSeen();
        for (const QByteArray &entry :
            {"ZU_UI=1"_ba, "TERM=dumb"_ba, "KELO_TEST_INHERITED=as is"_ba,
                "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/opt/homebrew/bin:/usr/local/bin"_ba,
                "KELO_HOME=" + fixture.dataDir.toUtf8(),
                "KELO_PAYLOAD=" + fixture.payload.toUtf8()})
            QCOMPARE(seen.count(entry), 1);
    }

    void theBridgeIsRefreshedByContent()
    {
        const QString bridge = u"reaper/ostrell_bridge.lua"_s;
        LinkFixture fixture;
        fixture.payload = fixture.folder.filePath(u"payload"_s);
        const QString shipped = fixture.payload + "/ostrell_bridge.lua"_L1;
        const auto startWith = [&](const QByteArray &script) {
            writeFile(shipped, script);
            fixture.start();
            return fixture.read(bridge);
        };
        fixture.start();
        QVERIFY(!QFileInfo::exists(fixture.dataDir + "/reaper"_L1));
        QCOMPARE(startWith("one\r\n"), "one\r\n"_ba);
        fixture.write(bridge, "edited");
        QCOMPARE(startWith("one\r\n"), "one\r\n"_ba);
        QCOMPARE(startWith({}), QByteArray());
        QVERIFY(QFileInfo::exists(fixture.dataDir + u'/' + bridge));
        fixture.write(bridge, "kept");
        QFile::remove(shipped);
        fixture.start();
        QCOMPARE(fixture.read(bridge), "kept"_ba);

        QDir(fixture.dataDir + "/reaper"_L1).removeRecursively();
        fixture.write(u"reaper"_s, "in the way");
        startWith("two");
        QCOMPARE(fixture.read(u"reaper"_s), "in the way"_ba);
    }

    void theDataDirectoryMayBeMissing()
    {
        LinkFixture made;
        made.dataDir = made.folder.filePath(u"not/yet/there"_s);
        made.start("line @mode talk");
        QTRY_COMPARE(made->mode.get(), u"talk"_s);
        QCOMPARE(made.engine.workingDirectory(), made.dataDir);

        LinkFixture inTheWay;
        inTheWay.dataDir = inTheWay.folder.filePath(u"script"_s);
        inTheWay.start();
        QCOMPARE(inTheWay->state.get(), u"OFFLINE"_s);
        QCOMPARE(inTheWay.engine.runs(), 0);
    }
};

QTEST_GUILESS_MAIN(EngineTest)
#include "engine_test.moc"
