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
            QCOMPARE(openFiles().size(), before);
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

    void thereIsTimeToEnd_data()
    {
        const Table<QByteArray> row{"end"};
        row("the program ends", "stop");
        row("it ends at once", "");
        row("nothing is freed", "stop leave");
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
        if (end.contains("stop"))
            (*fixture)->stop();
        QVERIFY(!engine.saved());
        if (end.endsWith("leave"))
            (*fixture)->leaveEngine();
        else if (!end.endsWith("restart"))
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
