#include "studio/mackie_control.h"
#include "studio/reaper_control.h"
#include "support/files.h"
#include "support/table.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

/// A workstation's end of the line, as hexadecimal text.
struct ScriptedPort : MidiPort {
    QStringList sent;
    std::vector<Message> waiting;

    void send(std::span<const std::uint8_t> message) override
    {
        sent << QString::fromLatin1(QByteArray(
            reinterpret_cast<const char *>(message.data()), static_cast<qsizetype>(message.size()))
                                        .toHex());
    }
    std::vector<Message> take() override { return std::exchange(waiting, {}); }
    void say(const QByteArray &hex)
    {
        const QByteArray bytes = QByteArray::fromHex(hex);
        waiting.emplace_back(bytes.begin(), bytes.end());
    }
};

} // namespace

class StudioTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pressesTheSurfacesButtons_data()
    {
        const Table<QList<int>, QString> row{"commands", "sent"};
        using C = StudioCommand;
        row("transport", {int(C::Play), int(C::Stop), int(C::Record)},
            u"905e7f 905e00 905d7f 905d00 905f7f 905f00"_s);
        row("to the start", {int(C::ToStart)}, u"905d7f 905d00 905d7f 905d00"_s);
        row("next track", {int(C::NextTrack), int(C::Arm)}, u"901d7f 901d00 90057f 900500"_s);
        row("previous track", {int(C::PreviousTrack), int(C::Arm)},
            u"901b7f 901b00 90037f 900300"_s);
        row("beyond the last",
            {int(C::NextTrack), int(C::NextTrack), int(C::NextTrack), int(C::NextTrack)},
            u"901d7f 901d00 901e7f 901e00 901f7f 901f00 90317f 903100 901f7f 901f00"_s);
        row("undo and markers", {int(C::Undo), int(C::AddMarker), int(C::NextMarker)},
            u"90517f 905100 90547f 905400 90547f 905c7f 905c00 905400"_s);
        row("no tempo", {int(C::Faster), int(C::Slower)}, u""_s);
    }

    void pressesTheSurfacesButtons()
    {
        QFETCH(QList<int>, commands);
        ScriptedPort port;
        MackieControl surface(port);
        QVERIFY(!surface.send(StudioCommand::Play)); // nobody there
        port.say("901c7f"); // the fifth track is selected
        for (const char *other : {"90177f", "90207f", "901d00"})
            port.say(other);
        surface.advance(1);
        QVERIFY(surface.connected());
        for (const int command : commands)
            QCOMPARE(surface.send(static_cast<StudioCommand>(command)),
                command < int(StudioCommand::Faster));
        QTEST(port.sent.join(u' '), "sent");
    }

    void theFirstTrackHasNoneBeforeIt()
    {
        ScriptedPort port;
        MackieControl surface(port);
        port.say("90187f");
        surface.advance(1);
        QVERIFY(surface.send(StudioCommand::PreviousTrack));
        QCOMPARE(port.sent.join(u' '), u"90307f 903000 90187f 901800"_s);
    }

    void saysWhoItIsAndKnowsWhetherAnybodyAnswers()
    {
        ScriptedPort port;
        MackieControl surface(port);
        for (const char *noise : {"90", "b01001", "f07e7f0601f7", "f000006614", "f8"})
            port.say(noise);
        surface.advance(1);
        QVERIFY(!surface.connected() && port.sent.isEmpty());
        port.say("f0000066140000f7");
        surface.advance(2);
        QVERIFY(surface.connected());
        port.say("f000006614024b454c4f30303101020304f7");
        surface.advance(3);
        QCOMPARE(port.sent,
            (QStringList{
                u"f000006614014b454c4f30303101020304f7"_s, u"f000006614034b454c4f303031f7"_s}));
        surface.advance(500);
        QVERIFY(surface.connected()); // nothing was asked of it
        QVERIFY(surface.send(StudioCommand::Play));
        surface.advance(501.5);
        port.say("905e7f"); // the light of Play
        surface.advance(501.9);
        surface.advance(600);
        QVERIFY(surface.connected());
        QVERIFY(surface.send(StudioCommand::Stop));
        surface.advance(601.9);
        QVERIFY(surface.send(StudioCommand::Stop)); // pressing again does not make it wait longer
        QVERIFY(surface.connected());
        surface.advance(602.1);
        QVERIFY(!surface.connected() && !surface.send(StudioCommand::Stop));
    }

    void reaperAnswersWhileItsNumberChanges()
    {
        QTemporaryDir folder;
        const auto status = [&](const QByteArray &text) {
            kelo::test::writeFile(folder.filePath(u"kelo-status"_s), text);
        };
        status("kelo-bridge 1 70 0 1\n"); // from yesterday
        ReaperControl reaper(folder.path().toStdString(), 100);
        reaper.advance(10);
        reaper.advance(11);
        QVERIFY(!reaper.connected() && !reaper.send(StudioCommand::Play));
        status("other 1 71 0 1\n");
        reaper.advance(12);
        status("kelo-bridge 2 71 0 1\n");
        reaper.advance(13);
        QVERIFY(!reaper.connected());
        status("kelo-bridge 1 71 0 1\n");
        reaper.advance(13.9); // not yet time to look
        QVERIFY(!reaper.connected());
        reaper.advance(14);
        QVERIFY(reaper.connected());
        for (int i = 0; i < 17; ++i)
            QVERIFY(reaper.send(i == 16 ? StudioCommand::Slower : StudioCommand::NextTrack));
        const QByteArray sent = kelo::test::readFile(folder.filePath(u"kelo-commands"_s));
        QVERIFY(sent.startsWith("101 next_track\n102 ") && sent.endsWith("\n116 slower\n"));
        reaper.advance(17.4);
        QVERIFY(reaper.connected());
        reaper.advance(18.4);
        QVERIFY(!reaper.connected());
    }

    void theBridgeObeysItsTableAlone_data()
    {
        const Table<QByteArray, QByteArray> row{"commands", "calls"};
        row("transport", "5 play\n6 play\n7 stop\n8 record\n9 start\n",
            "play\nstop\naction 1013\ncursor 0\n");
        row("tracks", "5 next_track\n6 next_track\n7 previous_track\n",
            "select 3\nselect 3\nselect 2\n");
        row("arm, twice", "5 arm\n6 arm\n", "arm 2 1\narm 2 0\n");
        row("undo and markers", "5 undo\n6 add_marker\n7 play\n8 add_marker\n9 next_marker\n",
            "undo\nmarker 1.5\nplay\nmarker 7.5\naction 40173\n");
        row("tempo", "5 faster\n6 slower\n7 slower\n", "tempo 103\ntempo 98\ntempo 93\n");
        row("what was there before", "3 play\n4 stop\n", "");
        row("none twice, none backwards", "6 stop\n6 stop\n5 undo\n", "stop\n");
        row("what it does not know", "5 os.exit()\n6 exit\n7 __index\n8 stop\n", "stop\n");
        row("no numbers", "stop\n-5 stop\n9999999999999999999 stop\n", "");
        row("a file that is too long", QByteArray(5000, ' ') + "5 stop\n", "");
        row(
            "many at a time",
            QByteArray("5 stop\n") +
                [] {
                    QByteArray all;
                    for (int i = 6; i < 40; ++i)
                        all += QByteArray::number(i) + " stop\n";
                    return all;
                }(),
            QByteArray("stop\n").repeated(32));
    }

    void theBridgeObeysItsTableAlone()
    {
        QFETCH(QByteArray, commands);
        QTemporaryDir folder;
        kelo::test::writeFile(folder.filePath(u"kelo-commands"_s), "4 stop\n");
        kelo::test::writeFile(folder.filePath(u"later"_s), commands);
        QProcess lua;
        lua.start(u"lua5.4"_s,
            {QFINDTESTDATA("stand_in.lua"), folder.path(), u"3"_s, QStringLiteral(BRIDGE)});
        QVERIFY(lua.waitForFinished());
        QCOMPARE(lua.readAllStandardError(), QByteArray());
        QTEST(kelo::test::readFile(folder.filePath(u"calls"_s)), "calls");
        const QByteArray status = kelo::test::readFile(folder.filePath(u"kelo-status"_s));
        QVERIFY2(status.startsWith("kelo-bridge 1 1 "), status.constData());
    }
};

QTEST_GUILESS_MAIN(StudioTest)
#include "studio_test.moc"
