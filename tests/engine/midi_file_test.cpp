#include "midi_bytes.h"
#include "music/midi_file.h"
#include "songs/library.h"
#include "sums.h"
#include "support/files.h"
#include "support/table.h"

#include <QTemporaryDir>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using namespace midi;
using kelo::test::Table;

Q_DECLARE_METATYPE(Bytes)
Q_DECLARE_METATYPE(std::vector<Note>)
Q_DECLARE_METATYPE(ReadFault)

class MidiFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drawsBarLines_data()
    {
        QTest::addColumn<midi::Bytes>("bytes");
        QTest::addColumn<QList<double>>("bars");
        QTest::addColumn<int>("spelling"); // sharps, flats, mixed
        const auto row = [](const char *name, const midi::Bytes &events, const QList<double> &bars,
                             int spelling = 2, int division = 96) {
            QTest::newRow(name) << join({header(0, 1, division), track(join({events, end}))})
                                << bars << spelling;
        };
        const Bytes on{0x90, 60, 80};
        const Bytes off{0x80, 60, 0};
        row("four quarters unless said", join({at(0, on), at(800, off)}), {0, 2, 4});
        row("three quarters, two sharps",
            join({at(0, {0xff, 0x58, 4, 3, 2, 24, 8}), at(0, {0xff, 0x59, 2, 2, 0}), at(0, on),
                at(600, off)}),
            {0, 1.5, 3}, 0);
        row("an upbeat, then six eighths, flats",
            join({at(0, {0xff, 0x58, 4, 1, 3, 24, 8}), at(0, {0xff, 0x59, 2, 0xfd, 0}), at(0, on),
                at(48, {0xff, 0x58, 4, 6, 3, 24, 8}), at(400, off)}),
            {0, 0.25, 1.75}, 1);
        row("a tempo that changes within a bar",
            join({at(0, on), at(192, tempo(1000000)), at(300, off)}), {0, 3});
        row("bars of no length",
            join({at(0, {0xff, 0x58, 4, 0, 2, 24, 8}), at(0, {0xff, 0x58, 4, 4, 99, 24, 8}),
                at(0, on), at(400, off)}),
            {0, 2});
        row("seconds have no bars", join({at(0, on), at(4000, off)}), {}, 2, 0xe728);
    }

    void drawsBarLines()
    {
        QFETCH(midi::Bytes, bytes);
        QFETCH(QList<double>, bars);
        QFETCH(int, spelling);
        const auto piece = std::get<Piece>(readMidiFile(bytes));
        QCOMPARE(QList<double>(piece.bars.begin(), piece.bars.end()), bars);
        QCOMPARE(static_cast<int>(piece.spelling), spelling);
    }

    void readsNotes_data()
    {
        const Table<Bytes, std::vector<Note>> row{"file", "notes"};
        const Bytes on{0x90, 60, 80};
        const Bytes off{0x80, 60, 0};

        row("running status, release by velocity 0",
            join({header(0, 1, 480),
                track(
                    join({at(0, on), at(480, {60, 0}), at(0, {62, 70}), at(240, {62, 0}), end}))}),
            {{0, 0.5, 60, 80, 0, 0}, {0.5, 0.25, 62, 70, 0, 0}});
        row("a header with a letter that begins XML",
            join({header(0, 1, '<'), track(join({at(0, on), at('<', off), end}))}),
            {{0, 0.5, 60, 80, 0, 0}});
        row("running status outlives a tempo event",
            join({header(0, 1, 480),
                track(join({at(0, on), at(480, tempo(1000000)), at(480, {60, 0}), end}))}),
            {{0, 1.5, 60, 80, 0, 0}});
        row("the tempo track rules the others",
            join({header(1, 3, 96), track(join({at(0, tempo(250000)), at(96, tempo(750000)), end})),
                track(join({at(96, on), at(96, off), end})),
                track(join({at(0, {0x91, 40, 9}), at(192, {0x81, 40, 0}), end}))}),
            {{0, 1, 40, 9, 2, 1}, {0.25, 0.75, 60, 80, 1, 0}});
        row("frames of 25 a second",
            join({header(0, 1, 0xe728), track(join({at(0, on), at(1000, off), end}))}),
            {{0, 1, 60, 80, 0, 0}});
        row("the same key twice at once ends in the order of its presses",
            join({header(0, 1, 480),
                track(join({at(0, on), at(480, on), at(480, off), at(480, off), end}))}),
            {{0, 1, 60, 80, 0, 0}, {0.5, 1, 60, 80, 0, 0}});
        row("a note never released ends with the track",
            join({header(0, 1, 480), track(join({at(0, on), at(960, {0xff, 0x2f, 0})}))}),
            {{0, 1, 60, 80, 0, 0}});
        row("unknown chunks, longer headers and system messages are passed over",
            join({chunk("MThd", {0, 0, 0, 1, 1, 0xe0, 9, 9}), chunk("XFIH", {1, 2, 3}),
                track(join({at(0, {0xf0, 2, 1, 0xf7}), at(0, on), at(0, {0xff, 1, 2, 'h', 'i'}),
                    at(480, off), end}))}),
            {{0, 0.5, 60, 80, 0, 0}});
        row("a release without a press, a tempo of 0",
            join({header(0, 1, 480),
                track(join({at(0, off), at(0, tempo(0)), at(0, on), at(480, off), end}))}),
            {{0, 0.5, 60, 80, 0, 0}});
        row("patterns follow each other",
            join({header(2, 2, 480),
                track(join({at(0, tempo(250000)), at(0, on), at(480, off), end})),
                track(join({at(480, {0x90, 62, 70}), at(480, {0x80, 62, 0}), end}))}),
            {{0, 0.25, 60, 80, 0, 0}, {0.5, 0.25, 62, 70, 1, 0}});
        row("within a RIFF file",
            riff("RMID", join({header(0, 1, 480), track(join({at(0, on), at(480, off), end}))})),
            {{0, 0.5, 60, 80, 0, 0}});
        row("a chunk that claims more than there is",
            join({header(0, 1, 480), {'M', 'T', 'r', 'k', 0xff, 0xff, 0xff, 0xff}, at(0, on),
                at(480, off)}),
            {{0, 0.5, 60, 80, 0, 0}});
    }

    void readsNotes()
    {
        QFETCH(Bytes, file);
        QFETCH(std::vector<Note>, notes);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"any name"_s);
        kelo::test::writeFile(
            path, {reinterpret_cast<const char *>(file.data()), qsizetype(file.size())});
        for (const auto &read : {readMidiFile(file), loadPiece(path.toStdString())}) {
            QVERIFY(std::holds_alternative<Piece>(read));
            QCOMPARE(std::get<Piece>(read).notes, notes);
        }
    }

    void tellsOfFilesThatEndEarly()
    {
        const Bytes whole = join({header(1, 2, 480), scaleTrack(4), scaleTrack(4)});
        QVERIFY(!std::get<Piece>(readMidiFile(whole)).endsEarly);
        for (const std::size_t lost : {1U, 3U, 9U, 40U}) {
            const auto read = readMidiFile({whole.data(), whole.size() - lost});
            QVERIFY(std::get<Piece>(read).endsEarly);
        }
        const Bytes promised = join({header(1, 3, 480), scaleTrack(4), scaleTrack(4)});
        QVERIFY(std::get<Piece>(readMidiFile(promised)).endsEarly);
        const Bytes damaged = join({header(0, 1, 480),
            track(join({at(0, {0x90, 60, 80}), at(480, {0x80, 60, 0}), {0, 0x90, 200}}))});
        QVERIFY(std::get<Piece>(readMidiFile(damaged)).endsEarly);
    }

    void saysHowFarItHasCome()
    {
        MidiProgress progress;
        const Bytes file = scale(30000);
        QCOMPARE(std::get<Piece>(readMidiFile(file, &progress)).notes.size(), 30000U);
        QVERIFY(progress.share > 0.8 && progress.share <= 1);
        progress.cancelled = true;
        QVERIFY(std::get<Piece>(readMidiFile(file, &progress)).notes.size() < 3000);
    }

    void refuses_data()
    {
        const Table<Bytes, ReadFault> row{"file", "fault"};
        const Bytes body = track(join({at(0, {0x90, 60, 80}), end}));
        row("nothing", {}, ReadFault::Unknown);
        row("another file", {'R', 'I', 'F', 'F', 0, 0, 0, 6, 0, 0, 0, 1, 1, 1}, ReadFault::Unknown);
        row("half a header", {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1}, ReadFault::Unknown);
        row("a format of the future", join({header(3, 1, 480), body}), ReadFault::Unsupported);
        row("a RIFF file of sound", riff("WAVE", join({header(0, 1, 480), body})),
            ReadFault::Unknown);
        row("a RIFF file without data",
            join({{'R', 'I', 'F', 'F', 4, 0, 0, 0, 'R', 'M', 'I', 'D'}}), ReadFault::Unknown);
        row("no ticks a quarter note", join({header(0, 1, 0), body}), ReadFault::Unsupported);
        row("no ticks a frame", join({header(0, 1, 0xe700), body}), ReadFault::Unsupported);
        row("no notes", join({header(0, 1, 480), track(end)}), ReadFault::Empty);
        row("data without a status", join({header(0, 1, 480), track({0, 60, 80})}),
            ReadFault::Empty);
        row("an endless delta time",
            join({header(0, 1, 480), track({0xff, 0xff, 0xff, 0xff, 0x7f, 0x90, 60, 80})}),
            ReadFault::Empty);
    }

    void refuses()
    {
        QFETCH(Bytes, file);
        const auto read = readMidiFile(file);
        QVERIFY(std::holds_alternative<ReadFault>(read));
        QTEST(std::get<ReadFault>(read), "fault");
    }

    void everyTruncationGivesAWholeBeginning()
    {
        const Bytes whole = scale(8);
        const auto all = std::get<Piece>(readMidiFile(whole)).notes;
        QCOMPARE(all.size(), 8U);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const auto read = readMidiFile({whole.data(), size});
            if (const auto *piece = std::get_if<Piece>(&read)) {
                for (std::size_t i = 0; i + 1 < piece->notes.size(); ++i)
                    QCOMPARE(piece->notes[i], all[i]); // the last one may have lost its release
            }
        }
    }

    void survivesDamageAndReadsTheRestAsEver()
    {
        std::mt19937 random(7);
        int sum = 0;
        for (int round = 0; round < 3000; ++round) {
            const Bytes signs = track(join({at(0, {0xff, 3, 4, 'L', 'e', 'f', 't'}),
                at(0, {0xff, 0x58, 4, 3, 2, 24, 8}), at(0, {0xff, 0x59, 2, 0xfe, 1}),
                at(500, tempo(400000)), at(900, {0xff, 0x58, 4, 6, 3, 24, 8}), at(5, {0xc0, 3}),
                at(7, {0xe1, 3, 70}), at(9, {0xb0, 64, 127}), at(2, {0xd2, 9}), at(1, {0xb5, 7, 9}),
                at(0, {0xf0, 2, 1, 0xf7}), at(300, {0xff, 0x59, 2, 2, 0}), end}));
            const int division = round % 5 == 0 ? 0xe728 : round % 5 == 1 ? 0xe350 : 480;
            Bytes damaged = join({header(round % 3, 2 + round % 2, division), scaleTrack(20, 50),
                signs, scaleTrack(13, 70)});
            if (round % 7 == 0)
                damaged = riff("RMID", damaged);
            for (int i = round % 8; i > 0; --i)
                damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
            const auto read = readMidiFile(damaged);
            if (const auto *piece = std::get_if<Piece>(&read)) {
                for (const Note &note : piece->notes)
                    QVERIFY(note.at >= 0 && note.duration >= 0 && note.at + note.duration <= 86400
                        && note.pitch < 128);
                QByteArray all = everythingOf(*piece) + QByteArray::number(piece->beats)
                    + QByteArray::number(piece->unit) + QByteArray::number(int(piece->spelling))
                    + QByteArray::number(piece->length) + (piece->endsEarly ? "!" : "");
                if (round % 8 == 0)
                    QVERIFY(piece->notes.capacity() == 33 && piece->messages.capacity() == 5);
                for (const std::string &name : piece->trackNames)
                    all += name.c_str();
                sum = qChecksum(all + QByteArray::number(sum));
            } else {
                sum = (sum * 5 + int(std::get<ReadFault>(read))) % 65536;
            }
        }
        QCOMPARE(unlikeKept(u"midi files"_s, {sum}), QString());
    }

    void endsAfterADay()
    {
        const Bytes long_{0xff, 0xff, 0xff, 0x7f};
        const Bytes file = join({header(0, 1, 1),
            track(
                join({at(0, {0x90, 60, 80}), long_, {0x80, 60, 0}, long_, {0x90, 61, 80}, end}))});
        const auto read = readMidiFile(file);
        QVERIFY(std::holds_alternative<Piece>(read));
        QCOMPARE(std::get<Piece>(read).notes.size(), 1U);
        QVERIFY(std::get<Piece>(read).length <= 86400);
        const auto bars = readMidiFile(join({header(0, 1, 480),
            track(join({at(0, {0xff, 0x58, 4, 1, 6, 24, 8}), at(0, {0x90, 60, 80}),
                {0xff, 0xff, 0x7f, 0x80, 60, 0}, end}))}));
        QCOMPARE(std::get<Piece>(bars).bars.size(), 20000U);
    }
};

QTEST_APPLESS_MAIN(MidiFileTest)
#include "midi_file_test.moc"
