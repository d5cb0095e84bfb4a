#include "midi/midi_stream.h"
#include "music/midi_file.h"
#include "music/midi_writer.h"
#include "piano/command_keys.h"
#include "piano/midi_thru.h"
#include "piano/piano.h"
#include "piano/recorder.h"
#include "stage.h"
#include "support/table.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

QString text(const std::vector<ChannelMessage> &messages)
{
    QStringList all;
    for (const auto &[status, first, second] : messages)
        all << u"%1 %2 %3"_s.arg(status, 0, 16).arg(first).arg(second);
    return all.join(u", "_s);
}

} // namespace

class PianoTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTopWhiteKeysAreCommands_data()
    {
        const Table<int, QList<int>> row{"top", "keys"};
        row("a black one is none", 102, {101, 100, 98, 96, 95, 93, 91, 89, 88, 86});
        row("too low", -7, {36, 35, 33, 31, 29, 28, 26, 24, 23, 21});
        row("too high", 9000, {127, 125, 124, 122, 120, 119, 117, 115, 113, 112});
    }

    void theTopWhiteKeysAreCommands()
    {
        QFETCH(int, top);
        QFETCH(QList<int>, keys);
        const CommandKeys command(top);
        QCOMPARE(QList<int>(command.pitches().begin(), command.pitches().end()), keys);
        QCOMPARE(command.place(keys[9]).value_or(-1), 9);
        QVERIFY(!command.place(keys[0] - 2 == keys[1] ? keys[0] - 1 : keys[9] - 1));
    }

    void findsMessagesInBytes_data()
    {
        const Table<QList<int>, QString> row{"bytes", "messages"};
        row("a note", {0x90, 60, 80, 0x80, 60, 0}, u"90 60 80, 80 60 0"_s);
        row("running status", {0x90, 60, 80, 60, 0}, u"90 60 80, 90 60 0"_s);
        row("one data byte", {0xc1, 5, 6, 0xd1, 7}, u"c1 5 0, c1 6 0, d1 7 0"_s);
        row("the clock in the middle", {0x90, 0xf8, 60, 0xfe, 80}, u"90 60 80"_s);
        row("a system message", {0xf0, 1, 2, 3, 0xf7, 9, 9, 0x90, 60, 80}, u"90 60 80"_s);
        row("from the middle on", {80, 60, 0x90, 60, 80}, u"90 60 80"_s);
        row("a message cut short", {0x90, 60, 0x91, 61, 80}, u"91 61 80"_s);
    }

    void findsMessagesInBytes()
    {
        QFETCH(QList<int>, bytes);
        QFETCH(QString, messages);
        MidiStream whole;
        std::vector<std::uint8_t> all(bytes.begin(), bytes.end());
        QCOMPARE(text(whole.feed(all)), messages);
        MidiStream single;
        std::vector<ChannelMessage> found;
        for (const std::uint8_t byte : all) {
            const auto some = single.feed({&byte, 1});
            found.insert(found.end(), some.begin(), some.end());
        }
        QCOMPARE(text(found), messages);
    }

    void remembersTheLastTake()
    {
        Recorder recorder;
        QVERIFY(!recorder.lastTake(0));
        recorder.key(60, 80, 100);
        recorder.key(60, 0, 101);
        recorder.key(64, 70, 105);
        recorder.key(64, 75, 106); // pressed again without a release
        const Piece take = recorder.lastTake(108).value();
        QCOMPARE(take.notes.size(), 3U);
        QVERIFY((take.notes[0] == Note{0, 1, 60, 80, 0, 0}));
        QVERIFY((take.notes[1] == Note{5, 1, 64, 70, 0, 0}));
        QVERIFY((take.notes[2] == Note{6, 2, 64, 75, 0, 0})); // is still held
        recorder.key(64, 0, 125);
        recorder.key(67, 80, 136); // after a long silence
        QCOMPARE(recorder.lastTake(137).value().notes.size(), 1U);
        for (int i = 0; i < 100000; ++i)
            recorder.key(i % 128, 1 + i % 2 * 64, 137 + i * 0.001);
        recorder.key(-1, 1, 300);
        recorder.key(128, 1, 300);
        QCOMPARE(recorder.lastTake(300).value().notes.size(), Recorder::mostNotes);
    }

    void whatIsKeptReadsBack()
    {
        Recorder recorder;
        recorder.key(60, 80, 0);
        recorder.key(60, 0, 0.5);
        recorder.key(62, 81, 200.25 - 195); // a long delta
        recorder.key(62, 0, 200.25 - 194);
        const Piece take = recorder.lastTake(9).value();
        const Piece read = std::get<Piece>(readMidiFile(writeMidiFile(take)));
        QCOMPARE(read.notes.size(), take.notes.size());
        for (std::size_t i = 0; i < take.notes.size(); ++i) {
            QVERIFY(std::abs(read.notes[i].at - take.notes[i].at) < 0.001);
            QVERIFY(std::abs(read.notes[i].duration - take.notes[i].duration) < 0.002);
            QCOMPARE(read.notes[i].velocity, take.notes[i].velocity);
        }
    }

    void aDeviceMayComeAndGo()
    {
        QTemporaryDir folder;
        const QByteArray path = folder.filePath(u"Stage Piano"_s).toUtf8();
        Piano piano([] {}, path.toStdString());
        QVERIFY(!piano.look(0));
        QVERIFY(piano.name().empty() && piano.take().empty() && piano.file() == -1);
        QCOMPARE(mkfifo(path, 0600), 0);
        QVERIFY(!piano.look(1)); // it is not time to look
        QVERIFY(piano.look(2));
        QCOMPARE(piano.name(), std::string("Stage Piano"));
        const int keys = open(path, O_WRONLY | O_NONBLOCK);
        QCOMPARE(write(keys, "\x90\x3c\x50", 3), 3);
        QCOMPARE(text(piano.take()), u"90 60 80"_s);
        piano.send({0x90, 60, 80}); // a pipe would send it back to us
        QVERIFY(piano.take().empty());
        close(keys);
        QVERIFY(!piano.look(4)); // still there, if nobody plays
        QVERIFY(QFile::remove(QString::fromUtf8(path)));
        QVERIFY(piano.look(6));
        QVERIFY(piano.name().empty());
        QCOMPARE(mkfifo(path, 0600), 0);
        QVERIFY(piano.look(8));

        Piano text([] {}, folder.filePath(u"x"_s).toStdString());
        QFile plain(folder.filePath(u"x"_s));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QVERIFY(!text.look(0));
    }

    void aMachineWithoutMidiIsNoFault()
    {
        Piano piano([] {}, {});
        for (double now = 0; now < 10; now += 1)
            piano.look(now);
        QVERIFY(piano.trouble().empty() == QFile::exists(u"/dev/snd/seq"_s));
        QVERIFY(piano.take().empty());
        piano.send({0x90, 60, 80});
    }

    void playsThroughThePianoInTime()
    {
        Recording speakers;
        AudioClock clock(0);
        std::vector<ChannelMessage> sent;
        MidiThru through(speakers, clock, [&](ChannelMessage message) { sent.push_back(message); });
        QVERIFY(through.play(frames(1), {0x90, 60, 80}));
        QVERIFY(!through.deadline()); // not asked to
        through.setOn(true);
        for (const ChannelMessage message :
            {ChannelMessage{0x91, 64, 80}, ChannelMessage{0xc0, 5, 0}, ChannelMessage{0x99, 36, 80},
                ChannelMessage{0xb1, 64, 127}})
            QVERIFY(through.play(frames(2), message));
        QVERIFY(through.play(frames(1), {0x90, 60, 80}));
        QCOMPARE(speakers.played.size(), 6U);
        QVERIFY(std::abs(*through.deadline() - 1) < 0.001);
        through.advance(1.5);
        QCOMPARE(text(sent), u"90 60 80"_s);
        through.advance(3);
        QCOMPARE(text(sent), u"90 60 80, 90 64 80, b0 64 127"_s); // on the first channel, no drums
        QVERIFY(through.play(frames(9), {0x90, 60, 80}));
        through.setOn(false);
        QVERIFY(!through.deadline());
        QVERIFY(text(sent).endsWith(u"b0 64 0, b0 123 0"_s));
        QCOMPARE(speakers.silenced, 1);
    }
};

QTEST_APPLESS_MAIN(PianoTest)
#include "piano_test.moc"
