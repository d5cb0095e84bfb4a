#include "songs/library.h"
#include "songs/menu.h"
#include "songs/notation.h"
#include "songs/shipped.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace kelo::engine;

class SongsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsNotation();
    void refusesWhatCannotBePlayed_data();
    void refusesWhatCannotBePlayed();
    void everyShippedSongIsWhole_data();
    void everyShippedSongIsWhole();
    void shippedSongsAreInTheirKey_data();
    void shippedSongsAreInTheirKey();
    void findsTheFilesOfAFolder();
    void findsTheMusicFolder_data();
    void findsTheMusicFolder();
    void theMenuGoesRound();
};

void SongsTest::readsNotation()
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
        notes << u"%1 %2 %3 %4"_s.arg(note.at).arg(note.duration).arg(note.pitch).arg(note.track);
    QCOMPARE(notes,
        QStringList({u"0 0.95 64 0"_s, u"1 0.7125 66 0"_s, u"1 3.8 36 1"_s, u"1.75 0.2375 58 0"_s,
            u"2 2.85 60 0"_s, u"2 2.85 64 0"_s}));
    QCOMPARE(piece->length, 4.85);
    QCOMPARE(piece->messages.size(), piece->notes.size() * 2);
}

void SongsTest::refusesWhatCannotBePlayed_data()
{
    QTest::addColumn<QByteArray>("voice");
    for (const char *voice : {"c4", "c4/4", "c4/4 c4 c4 c4 c4", "c4/4 c4 c4 | c4", "h4/1", "c/1",
             "c##4/1", "c4/3", "c4/1~", "c4/2~ d4", "c4+/1", " /1", "c4/0", "c4/-4",
             "c4/99999999999999", "c4/1 |", "~"})
        QTest::newRow(voice) << QByteArray(voice);
}

void SongsTest::refusesWhatCannotBePlayed()
{
    QFETCH(QByteArray, voice);
    QVERIFY(!readSheet({.right = {voice.toStdString()}}));
    QVERIFY(readSheet({.right = {"c4/1"}}));
    QVERIFY(!readSheet({.right = {"c4/1"}, .left = {"c4/1 | c4"}}));
}

void SongsTest::everyShippedSongIsWhole_data()
{
    QTest::addColumn<int>("song");
    QTest::addColumn<int>("bars");
    const QList<int> bars{16, 16, 24, 16, 32, 8, 12, 35};
    QCOMPARE(bars.size(), static_cast<qsizetype>(shippedSongs().size()));
    for (int i = 0; i < bars.size(); ++i)
        QTest::newRow(shippedSongs()[static_cast<std::size_t>(i)].title.c_str()) << i << bars[i];
}

void SongsTest::everyShippedSongIsWhole()
{
    QFETCH(int, song);
    QFETCH(int, bars);
    const Library library{{}};
    QVERIFY(!library.names()[static_cast<std::size_t>(song)].composer.empty());
    const auto loaded = library.load(static_cast<std::size_t>(song));
    QVERIFY(std::holds_alternative<Piece>(loaded));
    const auto &piece = std::get<Piece>(loaded);
    QCOMPARE(static_cast<int>(piece.bars.size()), bars);
    const auto &[low, high] = std::ranges::minmax(piece.notes, {}, &Note::pitch);
    QVERIFY(low.pitch >= 36 && high.pitch <= 84);
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

void SongsTest::shippedSongsAreInTheirKey_data()
{
    // Slips of the pen are mostly notes of no scale: the degrees that occur, as a piano has them.
    QTest::addColumn<int>("song");
    QTest::addColumn<QByteArray>("pitchClasses");
    QTest::addColumn<int>("lowestAtTheEnd");
    QTest::newRow("Au clair") << 0 << QByteArray("C D E G A B") << 48;
    QTest::newRow("Ode") << 1 << QByteArray("C D E F G A") << 43; // the dominant, then home
    QTest::newRow("Twinkle") << 2 << QByteArray("C D E F G A B") << 48;
    QTest::newRow("Greensleeves") << 3 << QByteArray("C D E F F# G G# A B") << 45;
    QTest::newRow("Minuet") << 4 << QByteArray("C C# D E F# G A B") << 43;
    QTest::newRow("Elise") << 5 << QByteArray("C D D# E G# A B") << 45;
    QTest::newRow("Gymnopedie") << 6 << QByteArray("C# D F# G A B") << 38;
    QTest::newRow("Prelude") << 7 << QByteArray("C C# D D# E F F# G G# A A# B") << 36;
}

void SongsTest::shippedSongsAreInTheirKey()
{
    QFETCH(int, song);
    QFETCH(QByteArray, pitchClasses);
    QFETCH(int, lowestAtTheEnd);
    const QByteArrayList names{"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    const auto piece = std::get<Piece>(Library{{}}.load(static_cast<std::size_t>(song)));
    QByteArrayList found;
    for (int degree = 0; degree < 12; ++degree) {
        if (std::ranges::any_of(
                piece.notes, [&](const Note &note) { return note.pitch % 12 == degree; }))
            found << names[degree];
    }
    QCOMPARE(found.join(' '), pitchClasses);
    int bass = 127;
    for (const Note &note : piece.notes) {
        if (note.at >= piece.bars.back() - 1e-9)
            bass = std::min(bass, note.pitch);
    }
    QCOMPARE(bass, lowestAtTheEnd);
}

void SongsTest::findsTheFilesOfAFolder()
{
    QTemporaryDir folder;
    const auto put = [&](const QString &name) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("x");
    };
    for (const QString &name : {u"b_side.MID"_s, u"A tune.midi"_s, u"cover.png"_s})
        put(name);
    QVERIFY(QDir(folder.path()).mkdir(u"folder.mid"_s));
    Library library(folder.path().toStdString());
    const std::size_t shipped = shippedSongs().size();
    QCOMPARE(library.size(), shipped + 2);
    QCOMPARE(library.names()[shipped].title, std::string("A tune"));
    QCOMPARE(library.names()[shipped + 1].title, std::string("b side"));
    QVERIFY(std::get<MidiFault>(library.load(shipped)) == MidiFault::NotMidi);
    QVERIFY(std::get<MidiFault>(library.load(999)) == MidiFault::Empty);
    put(u"z.mid"_s);
    library.refresh();
    QCOMPARE(library.size(), shipped + 3);
    QCOMPARE(Library("/nowhere/at/all").size(), shipped);
}

void SongsTest::findsTheMusicFolder_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QString>("folder");
    QTest::newRow("no settings") << QByteArray() << u"HOME/Music/Kelo Songs"_s;
    QTest::newRow("another language")
        << QByteArray("# x\nXDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_X=\"y\"\n")
        << u"HOME/Musik/Kelo Songs"_s;
    QTest::newRow("elsewhere") << QByteArray("XDG_MUSIC_DIR=\"/srv/music\"")
                               << u"/srv/music/Kelo Songs"_s;
    QTest::newRow("broken") << QByteArray("XDG_MUSIC_DIR=\"\nXDG_MUSIC_DIR=\"x\"")
                            << u"HOME/Music/Kelo Songs"_s;
}

void SongsTest::findsTheMusicFolder()
{
    QFETCH(QByteArray, settings);
    QFETCH(QString, folder);
    QTemporaryDir home;
    QVERIFY(QDir(home.path()).mkdir(u".config"_s));
    QFile file(home.filePath(u".config/user-dirs.dirs"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(settings);
    file.close();
    QCOMPARE(QString::fromStdString(songsFolder(home.path().toStdString()).string()),
        folder.replace(u"HOME"_s, home.path()));
}

void SongsTest::theMenuGoesRound()
{
    const std::vector<SongName> songs{{"One", "Ann"}, {"Two", ""}};
    SongMenu menu;
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
    QVERIFY(!menu.choose(0));
    QVERIFY(!menu.choose(3));
    QVERIFY(!menu.choose(-1));
    QCOMPARE(menu.current(), 1U);
    menu.setSongs(std::span(songs).first(1));
    QCOMPARE(menu.current(), 0U); // the file is gone
    QCOMPARE(menu.list(), std::string("There is one song. 1: One."));
}

QTEST_APPLESS_MAIN(SongsTest)
#include "songs_test.moc"
