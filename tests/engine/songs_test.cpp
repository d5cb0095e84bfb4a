#include "midi_bytes.h"
#include "music/message_feed.h"
#include "songs/library.h"
#include "songs/notation.h"
#include "songs/piece_loader.h"
#include "songs/shipped.h"
#include "songs/song_list.h"
#include "support/files.h"
#include "support/table.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using namespace kelo::test;

class SongsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsNotation()
    {
        const auto piece = readSheet({.title = "T",
            .composer = "",
            .beats = 2,
            .tempo = 60,
            .upbeat = 4,
            .right = {"e4/4 | f#4/8. bb3/16 c4+e4/4~ | c4+e4/2"},
            .left = {"r/4 | c2/2~ | c2"}});
        QVERIFY(piece);
        QVERIFY(piece->bars == std::vector<double>({0.0, 3.0}));
        QStringList notes;
        for (const Note &note : piece->notes)
            notes
                << u"%1 %2 %3 %4"_s.arg(note.at).arg(note.duration).arg(note.pitch).arg(note.track);
        QCOMPARE(notes,
            QStringList({u"0 0.95 64 0"_s, u"1 0.7125 66 0"_s, u"1 3.8 36 1"_s,
                u"1.75 0.2375 58 0"_s, u"2 2.85 60 0"_s, u"2 2.85 64 0"_s}));
        QCOMPARE(float(piece->length), 4.85F);
        std::vector<double> told; // a press and a release a note
        for (MessageFeed feed(*piece); const auto next = feed.next(); feed.pop())
            told.push_back(next->at);
        QCOMPARE(told.size(), piece->notes.size() * 2);
        QVERIFY(std::ranges::is_sorted(told));
    }

    void givenUpLoadingEnds()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"long.mid"_s);
        const midi::Bytes bytes = midi::scale(100'000);
        writeFile(file, {reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size())});
        const auto read = [&](const std::shared_ptr<MidiProgress> &progress) {
            PieceLoader loader(file.toStdString(), progress);
            for (;;) {
                if (auto piece = loader.take(1))
                    return std::get<Piece>(*piece).notes;
            }
        };
        const auto whole = std::make_shared<MidiProgress>();
        QVERIFY(read(whole) == std::get<Piece>(readMidiFile(bytes)).notes);
        QVERIFY(whole->share > 0.95 && whole->share <= 1 && whole->cancelled);
        QCOMPARE(read(whole).size(), 2048U); // has stopped where it looked for the first time
        QVERIFY(whole->share > 0.3 && whole->share < 0.35);
    }

    void refusesWhatCannotBePlayed_data()
    {
        const Table<QByteArray> row{"voice"};
        for (const char *voice : {"c4", "c4/4", "c4/4 c4 c4 c4 c4", "c4/4 c4 c4 | c4", "h4/1",
                 "c/1", "c##4/1", "c4/3", "c4/1~", "c4/2~ d4", "c4+/1", " /1", "c4/0", "c4/-4",
                 "c4/99999999999999", "c4/1 |", "~"})
            row(voice, QByteArray(voice));
    }

    void refusesWhatCannotBePlayed()
    {
        QFETCH(QByteArray, voice);
        QVERIFY(!readSheet({.right = {voice.toStdString()}}));
        QVERIFY(readSheet({.right = {"c4/1"}}));
        QVERIFY(!readSheet({.right = {"c4/1"}, .left = {"c4/1 | c4"}}));
    }

    void shippedSongsAreWholeAndInTheirKey_data()
    {
        // Slips of the pen are mostly notes of no scale, so: the degrees that occur, as a piano has
        // them, and the lowest key of the last bar.
        const Table<int, QByteArray, int> row{"bars", "degrees", "lastBass"};
        row("Au clair", 16, "C D E G A B", 48);
        row("Ode", 16, "C D E F G A", 43); // the dominant, then home
        row("Twinkle", 24, "C D E F G A B", 48);
        row("Greensleeves", 16, "C D E F F# G G# A B", 45);
        row("Minuet", 32, "C C# D E F# G A B", 43);
        row("Elise", 8, "C D D# E G# A B", 45);
        row("Gymnopédie", 12, "C# D F# G A B", 38);
        row("Prelude", 35, "C C# D D# E F F# G G# A A# B", 36);
    }

    void shippedSongsAreWholeAndInTheirKey()
    {
        const Library library{{}};
        const auto &names = library.names();
        QCOMPARE(names.size(), 8U); // a row each
        const auto name = std::ranges::find_if(names, [](const SongName &song) {
            return song.title.find(QTest::currentDataTag()) != std::string::npos;
        });
        QVERIFY(name != names.end() && !name->composer.empty());
        const auto loaded = library.load(static_cast<std::size_t>(name - names.begin()));
        QVERIFY(std::holds_alternative<Piece>(loaded));
        const auto &piece = std::get<Piece>(loaded);
        QTEST(static_cast<int>(piece.bars.size()), "bars");
        const QByteArrayList degrees{
            "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
        QSet<int> found;
        int bass = 127;
        for (const Note &note : piece.notes) {
            QVERIFY(note.pitch >= 36 && note.pitch <= 84);
            found << note.pitch % 12;
            if (note.at >= piece.bars.back() - 1e-9)
                bass = std::min<int>(bass, note.pitch);
        }
        QByteArrayList all;
        for (int degree = 0; degree < 12; ++degree) {
            if (found.contains(degree))
                all << degrees[degree];
        }
        QTEST(all.join(' '), "degrees");
        QTEST(bass, "lastBass");
        // No key is asked to sound twice at a time, and each hand can reach what it holds.
        for (const Note &a : piece.notes) {
            for (const Note &b : piece.notes) {
                if (&a == &b || a.at > b.at || a.at + a.duration <= b.at || a.track != b.track)
                    continue;
                QVERIFY2(a.pitch != b.pitch, qPrintable(u"%1 at %2"_s.arg(a.pitch).arg(b.at)));
                QVERIFY2(a.at != b.at || std::abs(a.pitch - b.pitch) <= 12,
                    qPrintable(u"%1 and %2 at %3"_s.arg(a.pitch).arg(b.pitch).arg(b.at)));
            }
        }
    }

    void findsTheFilesOfAFolder()
    {
        QTemporaryDir folder;
        for (const QString &name :
            {u"b_side.MID"_s, u"A tune.midi"_s, u"cover.png"_s, u"folder.mid/x"_s})
            writeFile(folder.filePath(name), "x");
        Library library(folder.path().toStdString());
        const std::size_t shipped = shippedSongs().size();
        QCOMPARE(library.size(), shipped + 2);
        QCOMPARE(library.names()[shipped].title, std::string("A tune"));
        QCOMPARE(library.names()[shipped + 1].title, std::string("b side"));
        QVERIFY(std::get<ReadFault>(library.load(shipped)) == ReadFault::Unknown);
        QVERIFY(std::get<ReadFault>(library.load(999)) == ReadFault::Empty);
        writeFile(folder.filePath(u"z.mid"_s), "x");
        library.refresh();
        QCOMPARE(library.size(), shipped + 3);
        QCOMPARE(Library("/nowhere/at/all").size(), shipped);
        for (int i = 0; i < 500; ++i)
            writeFile(folder.filePath(u"%1.mid"_s.arg(i)), "x");
        library.refresh();
        QCOMPARE(library.size(), shipped + 500);
    }

    void findsTheMusicFolder_data()
    {
        const Table<QByteArray, QString> row{"settings", "folder"};
        row("no settings", {}, u"HOME/Music/Kelo Songs"_s);
        row("another language", "# x\nXDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_X=\"y\"\n",
            u"HOME/Musik/Kelo Songs"_s);
        row("elsewhere", "XDG_MUSIC_DIR=\"/srv/music\"", u"/srv/music/Kelo Songs"_s);
        row("broken", "XDG_MUSIC_DIR=\"\nXDG_MUSIC_DIR=\"x\"", u"HOME/Music/Kelo Songs"_s);
    }

    void findsTheMusicFolder()
    {
        QFETCH(QByteArray, settings);
        QFETCH(QString, folder);
        QTemporaryDir home;
        writeFile(home.filePath(u".config/user-dirs.dirs"_s), settings);
        QCOMPARE(QString::fromStdString(songsFolder(home.path().toStdString()).string()),
            folder.replace(u"HOME"_s, home.path()));
    }

    void findsTheNewestDownload()
    {
        const QTemporaryDir home;
        const auto newest = [&] {
            return QString::fromStdString(
                newestPiece(downloadFolder(home.path().toStdString())).filename().string());
        };
        QCOMPARE(newest(), QString());
        writeFile(home.filePath(u".config/user-dirs.dirs"_s), "XDG_DOWNLOAD_DIR=\"$HOME/Neu\"\n");
        const auto add = [&](const QString &name, int minutesAgo) {
            const QString path = home.filePath(u"Neu/"_s + name);
            writeFile(path, "x");
            std::filesystem::last_write_time(path.toStdString(),
                std::filesystem::file_time_type::clock::now() - std::chrono::minutes(minutesAgo));
        };
        add(u"old.MID"_s, 9);
        add(u"newer.mxl"_s, 5);
        add(u"newest.pdf"_s, 1);
        add(u"oldest.midi"_s, 20);
        QCOMPARE(newest(), u"newer.mxl"_s);
        add(u"now.musicxml"_s, 0);
        QDir(home.path()).mkpath(u"Neu/folder.mid"_s);
        QCOMPARE(newest(), u"now.musicxml"_s);
    }

    void theMenuGoesRound()
    {
        const std::vector<SongName> songs{{"One", "Ann"}, {"Two", ""}};
        SongList menu;
        QCOMPARE(menu.describe(), std::string("There are no songs."));
        menu.next();
        menu.previous();
        QVERIFY(!menu.choose(1));
        menu.setSongs(songs);
        QCOMPARE(menu.describe(), std::string("Song 1 of 2: One, Ann."));
        menu.previous();
        QCOMPARE(menu.describe(), std::string("Song 2 of 2: Two."));
        menu.next();
        QCOMPARE(menu.current(), 0U);
        QVERIFY(menu.choose(2));
        for (const int none : {0, 3, -1})
            QVERIFY(!menu.choose(none));
        QCOMPARE(menu.current(), 1U);
        menu.setSongs(std::span(songs).first(1));
        QCOMPARE(menu.current(), 0U); // the file is gone
        QCOMPARE(menu.list(), std::string("There is one song. 1: One."));
        const std::vector<SongName> many(41, {"X", ""});
        for (const std::size_t count : {40, 41}) {
            menu.setSongs(std::span(many).first(count));
            const std::string end =
                count > 40 ? " 40: X. And more. Ask for them by name." : " 40: X.";
            QVERIFY(menu.list().ends_with(end));
        }
    }
};

QTEST_APPLESS_MAIN(SongsTest)
#include "songs_test.moc"
