#include "midi/midi_stream.h"
#include "music/message_feed.h"
#include "music/midi_file.h"
#include "music/midi_writer.h"
#include "piano/command_keys.h"
#include "piano/midi_thru.h"
#include "piano/piano.h"
#include "piano/recorder.h"
#include "piano/sequencer_source.h"
#include "stage.h"
#include "sums.h"
#include "support/files.h"
#include "support/table.h"

#include <QDir>
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

/// A MIDI system whose keyboards the test pulls out and plugs in.
class DeskMidi : public MidiSystem {
public:
    std::vector<std::string> ports() override { return there; }
    bool open(std::size_t place) override
    {
        opened << QString::fromStdString(there.at(place));
        return true;
    }
    void close() override { opened << u"none"_s; }
    News news() override { return std::exchange(told, {}); }
    int file() const override { return 77; }
    std::vector<ChannelMessage> take() override { return {{0x90, 60, 80}}; }
    void send(ChannelMessage message) override { opened << text({message}); }

    std::vector<std::string> there{"Midi Through:Midi Through Port-0 14:0",
        "RtMidi Output Client:x 128:0", "Kelo watch:news 129:0", "Timer:x 0:1"};
    News told;
    QStringList opened;
};

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

    void commandKeysGiveWayToMusic_data()
    {
        // What happens to keys 60 (music), 93 (the lowest command key) and 108 (the highest):
        // "93+0.5" is pressed half a second later, "93-" let go of. It then is music, swallowed,
        // command N or a tick of the hold.
        const Table<int, QString, QString> row{"rule", "keys", "meanings"};
        using Rule = CommandKeys::Rule;
        row("at once", int(Rule::AtOnce), u"60+0 60-0 108+0 108-0 93+0 93-0"_s,
            u"music music command0 swallowed command9 swallowed"_s);
        row("off", int(Rule::Off), u"108+0 108-0 93+0 93-3"_s, u"music music music music"_s);
        row("all is music", int(Rule::AfterHold), u"108+0 108-0 93+0 93-0.9 108+0.2"_s,
            u"music music music music music"_s);
        row("after a hold", int(Rule::AfterHold), u"93+0 93-1.1 108+0.5 108-0 108+0"_s,
            u"music tick music command0 swallowed music"_s);
        row("while it is held", int(Rule::AfterHold), u"93+0 108+1.1 108-0 93-0"_s,
            u"music tick command0 swallowed music"_s);
        row("the lowest itself", int(Rule::AfterHold), u"93+0 93-1.1 93+0 93-2"_s,
            u"music tick music command9 swallowed"_s);
        row("too late", int(Rule::AfterHold), u"93+0 93-1.1 108+5.1"_s,
            u"music tick music music"_s);
        row("just in time", int(Rule::AfterHold), u"93+0 93-1.1 108+3.8"_s,
            u"music tick music command0"_s);
        row("another key first", int(Rule::AfterHold), u"93+0 93-1.1 60+0 108+0"_s,
            u"music tick music music music"_s);
        row("held in a chord", int(Rule::AfterHold), u"93+0 60+0.5 60-0 93-0.7 108+0"_s,
            u"music music music music music"_s);
        row("another command key held", int(Rule::AfterHold), u"95+0 95-2 108+0"_s,
            u"music music music"_s);
    }

    void commandKeysGiveWayToMusic()
    {
        QFETCH(int, rule);
        QFETCH(QString, keys);
        CommandKeys commands(108);
        commands.setRule(static_cast<CommandKeys::Rule>(rule));
        QStringList meanings;
        double now = 10;
        for (const QString &key : keys.split(u' ')) {
            const bool presses = key.contains(u'+');
            const QStringList parts = key.split(presses ? u'+' : u'-');
            now += parts[1].toDouble();
            if (const auto due = commands.deadline(); due && *due <= now) {
                if (commands.advance(*due) && !commands.advance(now))
                    meanings << u"tick"_s;
            }
            const int pitch = parts[0].toInt();
            const auto [music, command] =
                presses ? commands.press(pitch, now) : commands.release(pitch);
            meanings << (command ? u"command%1"_s.arg(*command)
                    : music      ? u"music"_s
                                 : u"swallowed"_s);
        }
        QTEST(meanings.join(u' '), "meanings");
    }

    void takesCommandsAndRecordsAsEver()
    {
        QByteArray all;
        for (unsigned seed = 0; seed < 60; ++seed) {
            Chance chance(seed);
            CommandKeys commands(60 + chance.below(60));
            const QTemporaryDir folder;
            const std::string takes = seed % 6 == 0 ? folder.path().toStdString() : std::string();
            std::optional<Recorder> recorder(takes);
            std::vector<ChannelMessage> sent;
            Recording speakers;
            AudioClock clock(0);
            MidiThru through(speakers, clock, [&](ChannelMessage one) { sent.push_back(one); });
            double now = 10;
            for (int i = 0; i < 150; ++i) {
                if (chance.oneIn(12))
                    commands.setRule(static_cast<CommandKeys::Rule>(chance.below(3)));
                if (chance.oneIn(40))
                    commands.setTop(20 + chance.below(110));
                if (chance.oneIn(12))
                    through.setOn(chance.oneIn(3) ? false : true);
                now += chance.of(QList{0.05, 0.3, 0.3, 0.9, 1.1, 4.9, 5.2, 12.0});
                if (commands.deadline())
                    all += QByteArray::number(*commands.deadline() - now, 'f', 2);
                all += commands.advance(now) ? '!' : '.';
                const int pitch = chance.oneIn(3) ? 50 + chance.below(40)
                                                  : commands.pitches()[9 - chance.below(3) * 4];
                const bool down = !chance.oneIn(3);
                const auto [music, command] =
                    down ? commands.press(pitch, now) : commands.release(pitch);
                all += QByteArray::number(command.value_or(-1)) + (music ? 'm' : ' ');
                const auto key = static_cast<unsigned char>(pitch);
                const ChannelMessage message = chance.oneIn(8)
                    ? ChannelMessage{0xb0, static_cast<unsigned char>(63 + chance.below(6)),
                        static_cast<unsigned char>(chance.below(2) * 127)}
                    : ChannelMessage{static_cast<unsigned char>(down ? 0x90 : 0x80), key, 70};
                recorder->play(message, now);
                if (chance.oneIn(3))
                    recorder->advance(now + chance.below(4));
                all += QByteArray::number(recorder->deadline().value_or(0) - now, 'f', 2);
                if (chance.oneIn(15))
                    recorder->takeBack(pitch);
                through.play(clock.frameAt(now + chance.below(3) * 0.1), message);
                through.advance(now);
                all += QByteArray::number(through.deadline().value_or(0) - now, 'f', 2);
            }
            all += text(sent).toUtf8();
            for (const bool again : {false, true}) { // and the next day
                if (again)
                    recorder.emplace(takes);
                for (const Piece &take : recorder->takes(now))
                    all += everythingOf(take);
                all += QByteArray::number(int(recorder->takes(now).size()));
                if (const auto last = recorder->lastTake(now + 1))
                    all += everythingOf(*last);
            }
        }
        QCOMPARE(unlikeKept(u"piano"_s, {qChecksum(all)}), QString());
    }

    void recordsKeysAndPedals()
    {
        Recorder recorder;
        QVERIFY(!recorder.lastTake(0));
        recorder.play({0xb0, 64, 127}, 90); // is still down when the playing begins
        recorder.play({0x95, 60, 80}, 100);
        recorder.play({0x85, 60, 0}, 101);
        recorder.play({0xb0, 64, 0}, 102);
        recorder.play({0xb0, 7, 99}, 102); // no pedal
        recorder.play({0x90, 64, 70}, 105);
        recorder.play({0x90, 64, 75}, 106); // pressed again without a release
        recorder.play({0x90, 93, 80}, 106.5); // it turns out to ask for a command
        recorder.play({0x90, 65, 60}, 107);
        recorder.takeBack(93);
        recorder.play({0x80, 93, 0}, 107.2);
        recorder.play({0x80, 65, 0}, 107.5);
        const Piece take = recorder.lastTake(108).value();
        const std::vector<Note> notes{{0, 1, 60, 80, 0, 0}, {5, 1, 64, 70, 0, 0},
            {6, 2, 64, 75, 0, 0}, {7, 0.5, 65, 60, 0, 0}}; // one is still held
        QCOMPARE(take.notes, notes);
        QStringList messages;
        for (MessageFeed feed(take); const auto next = feed.next(); feed.pop())
            messages << u"%1 %2"_s.arg(next->at).arg(text({next->message}));
        QCOMPARE(messages.join(u", "_s),
            u"0 b0 64 127, 0 90 60 80, 1 80 60 0, 2 b0 64 0, 5 90 64 70, 6 80 64 0, 6 90 64 75, "
            "7 90 65 60, 7.5 80 65 0, 8 80 64 0"_s);
        for (int i = 0; i < 100000; ++i) {
            recorder.play({0x90, static_cast<unsigned char>(i % 128), 1}, 137 + i * 0.001);
            recorder.play({0xb0, 66, static_cast<unsigned char>(i % 128)}, 137 + i * 0.001);
        }
        QCOMPARE(recorder.lastTake(300).value().messages.size(), 20000U);
        QCOMPARE(recorder.lastTake(300).value().notes.size(), 20000U);
    }

    void takesStay()
    {
        QTemporaryDir folder;
        const std::filesystem::path path = folder.filePath(u"takes"_s).toStdString();
        double now = 100;
        const auto play = [&now](Recorder &recorder, int pitch, int count) {
            for (int i = 0; i < count; ++i, now += 0.5) {
                recorder.play({0x90, static_cast<unsigned char>(pitch), 80}, now);
                recorder.play({0x80, static_cast<unsigned char>(pitch), 0}, now + 0.4);
            }
        };
        const auto firstKeys = [](const std::vector<Piece> &takes) {
            QList<int> keys;
            for (const Piece &take : takes)
                keys << take.notes.front().pitch;
            return keys;
        };
        {
            Recorder recorder(path);
            for (int pitch = 50; pitch < 62; ++pitch) {
                play(recorder, pitch, 5);
                if (pitch == 58) { // nobody looks before the next one begins
                    now += 12;
                    continue;
                }
                QVERIFY(std::abs(*recorder.deadline() - (now - 0.1 + Recorder::rest)) < 0.01);
                recorder.advance(now + 1); // is still being played
                QVERIFY(recorder.deadline());
                recorder.advance(now + 2);
                QVERIFY(!recorder.deadline());
                now += 12;
            }
            play(recorder, 90, 3); // stray keys
            QCOMPARE(recorder.lastTake(now)->notes.front().pitch, 61);
            QCOMPARE(
                firstKeys(recorder.takes(now)), (QList{61, 60, 59, 58, 57, 56, 55, 54, 53, 52}));
            now += 9; // goes on within ten seconds
            play(recorder, 91, 1);
            QCOMPARE(recorder.lastTake(now)->notes.size(), 4U);
        }
        kelo::test::writeFile(folder.filePath(u"takes/take-1000.mid"_s), "half a file");
        kelo::test::writeFile(folder.filePath(u"takes/notes.txt"_s), "mine");
        Recorder recorder(path); // after a crash, or the next day
        const auto takes = recorder.takes(now);
        QCOMPARE(firstKeys(takes), (QList{90, 61, 60, 59, 58, 57, 56, 55, 54, 53}));
        QCOMPARE(takes[1].notes.size(), 5U);
        const QString draft = folder.filePath(u"takes/take-14.mid.new"_s);
        QVERIFY(QDir().mkdir(draft)); // nothing can be written there
        play(recorder, 70, 4);
        recorder.advance(now + 3);
        QTRY_VERIFY(!recorder.keep());
        QVERIFY(QDir().rmdir(draft));
        QTRY_VERIFY(recorder.keep());
        QTRY_VERIFY(QDir(folder.filePath(u"takes"_s)).exists(u"take-14.mid"_s));
        QTRY_COMPARE(QDir(folder.filePath(u"takes"_s)).entryList({u"take-*"_s}).size(), 10);
        QVERIFY(QFile::exists(folder.filePath(u"takes/notes.txt"_s)));
    }

    void whatIsKeptReadsBack()
    {
        Piece take;
        take.notes = {{0, 0.5, 60, 80, 0, 0}, {5.25, 1, 62, 81, 0, 0}}; // a long delta
        take.messages = {{0, {0xb0, 64, 127}}, {0.7, {0xc0, 5, 0}}};
        measureLength(take);
        const Piece read = std::get<Piece>(readMidiFile(writeMidiFile(take)));
        QVERIFY(writeMidiFile(read) == writeMidiFile(take));
        QVERIFY(std::abs(read.notes[1].at - 5.25) < 0.001 && read.notes[1].velocity == 81);
        QCOMPARE(read.messages[0].message, (ChannelMessage{0xb0, 64, 127}));
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
        QVERIFY(QFile::rename(QString::fromUtf8(path), folder.filePath(u"old"_s)));
        QCOMPARE(mkfifo(path, 0600), 0); // replugged before anybody looked
        QVERIFY(piano.look(10));
        QVERIFY(piano.look(12) && piano.name() == "Stage Piano");
        const int again = open(path, O_WRONLY | O_NONBLOCK);
        QCOMPARE(write(again, "\x90\x3d\x50", 3), 3);
        QCOMPARE(text(piano.take()), u"90 61 80"_s);
        close(again);

        const int desk = posix_openpt(O_RDWR | O_NOCTTY); // a device that can be played, too
        QVERIFY(grantpt(desk) == 0 && unlockpt(desk) == 0);
        {
            Piano device([] {}, ptsname(desk));
            QVERIFY(device.look(0) && device.file() >= 0);
            device.send({0xc0, 5, 99});
            device.send({0x90, 60, 80});
            QByteArray played(20, 0);
            QCOMPARE(read(desk, played.data(), 20), 5);
            QCOMPARE(played.left(5).toHex(), "c005903c50");
        }
        close(desk);

        Piano text([] {}, folder.filePath(u"x"_s).toStdString());
        QFile plain(folder.filePath(u"x"_s));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QVERIFY(!text.look(0));
    }

    void aKeyboardThatIsBackAtOnceIsConnectedAnew()
    {
        auto system = std::make_unique<DeskMidi>();
        DeskMidi &desk = *system;
        SequencerSource source(std::move(system));
        QVERIFY(!source.look() && !source.stirred());
        desk.there.push_back("Stage Piano:Stage Piano MIDI 1 20:0");
        desk.told = {true, {}};
        QVERIFY(source.stirred() && source.look());
        QCOMPARE(source.name(), std::string("Stage Piano"));
        desk.told = {true, {2, 200}}; // others
        QVERIFY(source.stirred() && !source.look());
        desk.told = {true, {20}}; // and there it is again, of the same name and number
        QVERIFY(source.stirred() && source.look() && !source.look());
        QCOMPARE(source.name(), std::string("Stage Piano"));
        source.send({0x90, 61, 80});
        const QString port = QString::fromStdString(desk.there.back());
        QCOMPARE(desk.opened, (QStringList{u"none"_s, port, u"none"_s, port, u"90 61 80"_s}));
        QVERIFY(source.file() == 77 && text(source.take()) == u"90 60 80");
        desk.there.pop_back();
        QVERIFY(source.look() && source.name().empty());
        QCOMPARE(desk.opened.size(), 6);
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
        through.setOn(true);
        for (int i = 0; i < 5000; ++i)
            QVERIFY(through.play(frames(9), {0x90, 60, 80}));
        sent.clear();
        through.advance(9.1);
        QCOMPARE(sent.size(), 4096U);
        QCOMPARE(speakers.silenced, 1);
    }
};

QTEST_APPLESS_MAIN(PianoTest)
#include "piano_test.moc"
