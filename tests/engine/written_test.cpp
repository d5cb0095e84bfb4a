#include "braille/braille_page.h"
#include "composing/composer.h"
#include "composing/music_xml.h"
#include "reading/description.h"
#include "songs/library.h"
#include "sums.h"
#include "support/files.h"
#include "support/table.h"
#include "written/hand_division.h"
#include "written/music_xml_reader.h"
#include "written/note_value.h"
#include "written/performance.h"
#include "written/phrases.h"
#include "written/transcript.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;
using kelo::test::writeFile;

namespace {

std::variant<WrittenPiece, ReadFault> read(const QByteArray &xml)
{
    return readMusicXml(
        {reinterpret_cast<const std::uint8_t *>(xml.data()), static_cast<std::size_t>(xml.size())});
}

QByteArray score(const QByteArray &measures)
{
    return "<score-partwise><part id='P1'>" + measures + "</part></score-partwise>";
}

/// "C4 2 staff=1": step, octave and length in eighths; "r" is a rest, "+" a note of the chord.
QByteArray note(const QByteArray &what, const QByteArray &inside = {})
{
    const QList<QByteArray> words = what.split(' ');
    const bool chord = words[0].startsWith('+');
    const QByteArray name = chord ? words[0].mid(1) : words[0];
    QByteArray pitch = "<rest/>";
    if (name != "r") {
        pitch = "<pitch><step>" + name.left(1) + "</step>"
            + (name.contains('#') ? "<alter>1</alter>" : "") + "<octave>" + name.right(1)
            + "</octave></pitch>";
    }
    return "<note>" + QByteArray(chord ? "<chord/>" : "") + pitch + "<duration>" + words[1]
        + "</duration><staff>" + words.value(2, "1") + "</staff>" + inside + "</note>";
}

const QByteArray twoFour = "<attributes><divisions>2</divisions><time><beats>2</beats>"
                           "<beat-type>4</beat-type></time></attributes>";

QByteArray bar(const QByteArray &contents, const QByteArray &attributes = {})
{
    return "<measure " + attributes + ">" + contents + "</measure>";
}

QString hands(const Piece &piece)
{
    QString all;
    for (const Hands hand : handsOf(piece))
        all += u"BRL"[static_cast<int>(hand)];
    return all;
}

/// All that is known of a piece.
QByteArray everythingIn(const WrittenPiece &piece)
{
    QByteArray all = (piece.title + piece.composer).c_str();
    const auto add = [&](std::initializer_list<int> numbers) {
        for (const int value : numbers)
            all += QByteArray::number(value) + ' ';
    };
    for (const WrittenNote &each : piece.notes) {
        add({each.at, each.length, each.bar, each.voice, each.part, each.pitch, each.step,
            each.alter, each.staff, each.finger, each.dots, each.value, each.velocity,
            int(each.hand), each.tiedBefore, each.tiedOn, each.slurBegins, each.slurEnds,
            each.rolled, each.trill, each.staccato});
        all += each.lyric.c_str();
    }
    for (const WrittenBar &each : piece.bars)
        add({each.at, each.length, each.upbeat, each.number, each.beats, each.unit, each.fifths,
            each.minor, each.repeatBegins, each.repeatEnds, int(each.endings), each.segno,
            each.coda, each.toCoda, each.fine, each.daCapo, each.dalSegno});
    for (const WrittenSign &each : piece.signs) {
        add({int(each.kind), each.at, each.bar, int(each.tempo * 10)});
        all += each.text.c_str();
    }
    for (const std::size_t most : {10000U, 12U}) {
        for (const Stretch &each : phrasesOf(piece, most))
            add({each.from, each.to});
    }
    return all;
}

/// All that a reader gets to hear of it, in all ways there are to go.
QByteArray everythingTold(const std::shared_ptr<const WrittenPiece> &written, Chance &chance)
{
    QByteArray all;
    Walk walk(written);
    Description description;
    for (int i = 0; i < 60; ++i) {
        if (chance.oneIn(6))
            walk.setUnit(static_cast<WalkUnit>(chance.below(4)));
        if (chance.oneIn(8))
            all += walk.setHands(static_cast<Hands>(chance.below(3))) ? 'h' : '-';
        if (chance.oneIn(10))
            all += walk.toBar(chance.below(9)) ? 'b' : '-';
        if (chance.oneIn(12))
            description.forget();
        all += walk.step(chance.of(QList{1, 1, 1, 1, -1, 2})) ? '>' : '|';
        const Stretch here = walk.here();
        all += description.tell(walk, here, walk.hands()) + spelledChord(walk, here.from)
            + placeOf(walk.barAt(here.from), here.from) + keyOf(walk.barAt(here.from));
    }
    return all;
}

/// What a reader hears who walks through all of it.
QStringList told(const std::shared_ptr<const WrittenPiece> &written)
{
    Walk walk(written);
    Description description;
    QStringList all;
    do
        all << QString::fromStdString(description.tell(walk, walk.here(), walk.hands()));
    while (walk.step(1));
    return all;
}

} // namespace

class WrittenTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatWeWriteReadsBackTheSame()
    {
        for (std::uint32_t seed = 1; seed <= 6; ++seed) {
            const Score made = makeUp({static_cast<Mood>(seed % 6), {}}, seed);
            const auto back = read(QByteArray::fromStdString(musicXml(made)));
            const auto &written = std::get<WrittenPiece>(back);
            QCOMPARE(written.title, made.title);
            const Piece was = pieceOf(made);
            const Piece is =
                performed(std::make_shared<const WrittenPiece>(written), Repeats::Played);
            QCOMPARE(is.bars.size(), was.bars.size());
            QCOMPARE(is.notes.size(), was.notes.size());
            QCOMPARE(is.beats, was.beats);
            std::vector<std::pair<int, double>> a;
            std::vector<std::pair<int, double>> b;
            for (std::size_t i = 0; i < is.notes.size(); ++i) {
                a.emplace_back(was.notes[i].pitch, was.notes[i].at);
                b.emplace_back(is.notes[i].pitch, is.notes[i].at);
            }
            std::ranges::sort(a);
            std::ranges::sort(b);
            for (std::size_t i = 0; i < a.size(); ++i)
                QVERIFY(a[i].first == b[i].first && std::abs(a[i].second - b[i].second) < 1e-6);
        }
    }

    void playsBarsInTheirOrder_data()
    {
        const QByteArray left = "<barline location='left'>";
        const QByteArray begin = left + "<repeat direction='forward'/></barline>";
        const QByteArray end = "<barline><repeat direction='backward'/></barline>";
        const auto ending = [&](const QByteArray &number) {
            return left + "<ending type='start' number='" + number + "'/></barline>";
        };
        const QByteArray close = "<barline><ending type='stop'/></barline>";
        const Table<QList<QByteArray>, QString> row{"bars", "order"};
        row("plain", {"", "", ""}, u"0 1 2"_s);
        row("from the beginning", {"", end, ""}, u"0 1 0 1 2"_s);
        row("in the middle", {"", begin, end, ""}, u"0 1 2 1 2 3"_s);
        row("one bar", {"", begin + end, ""}, u"0 1 1 2"_s);
        row("three times", {"", "<barline><repeat direction='backward' times='3'/></barline>"},
            u"0 1 0 1 0 1"_s);
        row("two in a row", {"", end, "", end}, u"0 1 0 1 2 3 2 3"_s);
        row("endings", {begin, ending("1") + close + end, ending("2") + close, ""}, u"0 1 0 2 3"_s);
        row("endings of two bars", {begin, ending("1"), close + end, ending("2"), close},
            u"0 1 2 0 3 4"_s);
        row("da capo al fine", {"", "<sound fine='yes'/>", "<sound dacapo='yes'/>"},
            u"0 1 2 0 1"_s);
        row("dal segno al coda",
            {"", "<sound segno='a'/>", "<sound tocoda='a'/>", "<sound dalsegno='a'/>",
                "<sound coda='a'/>"},
            u"0 1 2 3 1 2 4"_s);
    }

    void playsBarsInTheirOrder()
    {
        QFETCH(QList<QByteArray>, bars);
        QByteArray measures;
        for (const QByteArray &each : bars)
            measures += bar((measures.isEmpty() ? twoFour : "") + note("C4 4") + each);
        const auto written = read(score(measures));
        QStringList order;
        for (const int each : playedBars(std::get<WrittenPiece>(written), Repeats::Played))
            order << QString::number(each);
        QTEST(order.join(u' '), "order");
    }

    void readsWhatIsWritten()
    {
        const QByteArray xml = score(bar(twoFour + note("G3 2"), "number='0' implicit='yes'")
            + bar("<direction><direction-type><dynamics><f/></dynamics></direction-type>"
                  "<sound tempo='120'/></direction>"
                    + note("C4 2",
                        "<notations><technical><fingering>1</fingering></technical>"
                        "</notations>")
                    + note("+E4 2") + note("D4 2", "<tie type='start'/>")
                    + "<backup><duration>4</duration></backup>" + note("C3 4 2"),
                "number='1'")
            + bar(note("D4 2", "<tie type='stop'/>") + note("r 2"), "number='2'"));
        const auto written = read(xml);
        const Piece piece = performed(
            std::make_shared<const WrittenPiece>(std::get<WrittenPiece>(written)), Repeats::Played);
        QCOMPARE(hands(piece), u"RLRRR"_s);
        QCOMPARE(piece.bars, (std::vector{0.0, 1.5 + 0.1}));
        QCOMPARE(piece.barNumbers, (std::vector{1, 2}));
        const Note &tied = piece.notes.back();
        QVERIFY(tied.pitch == 62 && std::abs(tied.duration - 0.95) < 1e-6); // both, at 120
        QVERIFY(piece.notes[1].velocity == 96 && piece.marks[2].finger == 1);
    }

    void tellsAllThatIsWritten()
    {
        const QByteArray xml = score(
            bar("<attributes><divisions>2</divisions><key><fifths>-3</fifths><mode>minor</mode></"
                "key>"
                "<time><beats>6</beats><beat-type>8</beat-type></time></attributes>"
                "<harmony><root><root-step>A</root-step><root-alter>-1</root-alter></root>"
                "<kind>major-seventh</kind></harmony><direction><direction-type>"
                "<words>Andante, with rest</words></direction-type></direction>"
                    + note("C4 1",
                        "<type>eighth</type><notations><slur type='start'/><articulations>"
                        "<staccato/></articulations></notations><lyric><text>Sleep</text></lyric>")
                    + note("D4 2",
                        "<type>quarter</type><notations><slur type='stop'/><ornaments>"
                        "<trill-mark/></ornaments></notations>")
                    + note("F#4 3", "<type>quarter</type><dot/>")
                    + "<backup><duration>6</duration></backup>"
                    + note("C3 6 2", "<notations><arpeggiate/></notations>")
                    + note("+G3 6 2", "<notations><arpeggiate/></notations>"),
                "number='1'")
            + bar("<direction><direction-type><metronome><beat-unit>quarter</beat-unit>"
                  "<beat-unit-dot/><per-minute>50</per-minute></metronome></direction-type>"
                  "<direction-type><dynamics><pp/></dynamics></direction-type></direction>"
                    + note("A4 0", "<grace/>") + note("G4 3") + "<sound dynamics='100'/>"
                    + "<forward><duration>1</duration></forward>" + note("E4 2"),
                "number='2'")
            + bar("<attributes><time><beats>3</beats><beat-type>2</beat-type></time></attributes>"
                    + note("C5 12", "<type>whole</type><dot/>"),
                "number='3'"));
        const auto read_ = read(xml);
        const auto written = std::make_shared<const WrittenPiece>(std::get<WrittenPiece>(read_));
        QCOMPARE(told(written),
            QStringList(
                {u"Bar one, C minor, three flats, six eight time, chord Abmaj7, Andante, "
                 "with rest. Right hand: C four, eighth, sung Sleep. Left hand: C three G, dotted half, rolled."_s,
                    u"Right hand: D, quarter, ornament."_s, u"F sharp, dotted quarter."_s,
                    u"Bar two, pianissimo. grace note A; G."_s, u"Eighth rest."_s, u"E, quarter."_s,
                    u"Bar three, three two time. C five, dotted whole note."_s}));
        QCOMPARE(qChecksum(everythingOf(performed(written, Repeats::Played))), 8473);
    }

    void readsAnyScoreAsEver()
    {
        const Chance::Rules rules = Chance::rulesIn(QFINDTESTDATA("any_text.txt"));
        QList<int> sums;
        for (unsigned seed = 0; seed < 200; ++seed) {
            Chance chance(seed);
            const auto result = read(chance.text(rules, seed % 2 == 0 ? "$score" : "$tidy"));
            const auto *piece = std::get_if<WrittenPiece>(&result);
            if (seed % 20 == 0)
                sums << 0;
            if (!piece)
                continue;
            const auto written = std::make_shared<const WrittenPiece>(*piece);
            sums.last() = qChecksum(QByteArray::number(sums.last()) + everythingIn(*written)
                + everythingOf(performed(written, Repeats::Played))
                + everythingOf(performed(written, Repeats::Skipped))
                + everythingTold(written, chance) + brfOf(*written).c_str()
                + brailleOfBar(*written, seed % 5, static_cast<Hands>(seed % 3)).c_str());
        }
        QCOMPARE(unlikeKept(u"scores"_s, sums), QString());
    }

    void writesDownAnythingAsEver()
    {
        QList<int> sums;
        for (unsigned seed = 0; seed < 60; ++seed) {
            Chance chance(seed);
            Piece piece;
            double at = chance.of(QList{0.0, 0.5});
            const double bar = chance.of(QList{2.0, 1.5, 3.0});
            for (int i = 0; i < 50; ++i) {
                const int track = chance.below(1 + int(seed % 3));
                const int channel = chance.oneIn(20) ? 9 : seed % 7 == 0 ? track : 0;
                for (int pitch = 36 + chance.below(40), more = chance.below(4); more >= 0; --more)
                    piece.notes.push_back(
                        {at + 0.002 * more, chance.of(QList{0.1, 0.23, 0.48, 0.95, 1.9}),
                            pitch += 1 + chance.below(9), 30 + chance.below(90), track, channel});
                at += chance.of(QList{0.125, 0.25, 0.5, 0.5, 0.75, 1.0 / 3, 1.0, 2.5})
                    + 0.003 * chance.below(9);
            }
            for (double line = 0; seed % 8 != 7 && line < at; line += bar)
                piece.bars.push_back(line);
            piece.beats = int(bar * 2);
            if (seed % 5 == 0)
                piece.trackNames = {chance
                                        .of(QStringList{u"RH"_s, u"Piano left"_s, u"Upper"_s,
                                            u"bass clef"_s, u"L.H."_s, u"x"_s})
                                        .toStdString(),
                    "lh"};
            if (seed % 7 == 0)
                piece.messages = {{0, {0xc0, 0, 0}}, {0, {0xc1, 7, 0}}, {0, {0xc2, 8, 0}}};
            piece.spelling = static_cast<Spelling>(seed % 3);
            measureLength(piece);
            const auto written = writtenOf(piece);
            if (seed % 15 == 0)
                sums << 0;
            sums.last() = qChecksum(QByteArray::number(sums.last()) + everythingIn(*written)
                + hands(piece).toUtf8() + everythingOf(studied(piece))
                + everythingTold(written, chance) + brfOf(*written).c_str());
        }
        QCOMPARE(unlikeKept(u"transcripts"_s, sums), QString());
    }

    void namesLengths()
    {
        QByteArray all;
        for (const int beat : {writtenQuarter, writtenQuarter / 2, writtenQuarter * 3 / 2}) {
            for (int length = 100; length < 9 * writtenQuarter; length += 155)
                all +=
                    nameOf(length, beat).c_str() + QByteArray::number(nearestValue(length)) + ' ';
            for (int value = 1; value <= 128; value *= 2) {
                for (const int twelfths : {12, 18, 21, 8, 9})
                    all += nameOf(writtenQuarter * twelfths / 3 / value, beat) + ' ';
            }
        }
        QCOMPARE(unlikeKept(u"lengths"_s, {qChecksum(all)}), QString());
    }

    void refusesBadFiles_data()
    {
        QByteArray deep = score(bar(twoFour + note("C4 4")));
        deep.insert(deep.indexOf("<note>"), QByteArray("<x>").repeated(200000));
        const Table<QByteArray, int> row{"bytes", "fault"}; // -1: it is read all the same
        row("nothing", "", int(ReadFault::Unknown));
        row("other XML", "<html/>", int(ReadFault::Unknown));
        row("measures outside", "<score-timewise/>", int(ReadFault::Unsupported));
        row("no notes", score(bar(note("r 4"))), int(ReadFault::Empty));
        row("cut off", score(bar(note("C4 4"))).chopped(60), -1);
        row("deep", deep, int(ReadFault::Empty));
        row("an octave too many", score(bar(note("C9 4") + note("G9 4") + note("A9 4"))), -1);
        row("numbers beyond measure",
            score(
                bar(note("C4 99999999999999999999") + "<backup><duration>1e300</duration></backup>"
                    + note("D4 nan") + note("E4 -5") + note("F4 4 77"))),
            -1);
        row("entities of entities",
            "<!DOCTYPE a [<!ENTITY b 'x'><!ENTITY c '&b;&b;'>]>"
                + score(bar(note("C4 4", "<lyric><text>&c;</text></lyric>"))),
            -1);
        row("too large", QByteArray((16 << 20) + 1, ' '), int(ReadFault::TooLarge));
        row("not quite", QByteArray(16 << 20, ' '), int(ReadFault::Unknown));
    }

    void refusesBadFiles()
    {
        QFETCH(QByteArray, bytes);
        const auto result = read(bytes);
        const auto *fault = std::get_if<ReadFault>(&result);
        QTEST(fault ? int(*fault) : -1, "fault");
        if (!fault) {
            for (const WrittenNote &each : std::get<WrittenPiece>(result).notes)
                QVERIFY(each.pitch < 128 && each.length >= 0 && each.length <= 40 * writtenQuarter);
        }
    }

    void readsAndPlaysNoMoreThanAScore()
    {
        const QByteArray again = "<barline><repeat direction='backward' times='9'/></barline>";
        const QByteArray bars = bar(note("C4 4")).repeated(4999) + bar(note("C4 4") + again);
        const auto read_ =
            read(score(bars + bars)
                     .insert(16, "<movement-title>" + QByteArray(300, 'x') + "</movement-title>"));
        const auto &piece = std::get<WrittenPiece>(read_);
        QCOMPARE(piece.title.size(), 200U);
        QCOMPARE(piece.bars.size(), 5000U);
        QCOMPARE(piece.bars.back().repeatEnds, 8);
        QCOMPARE(playedBars(piece, Repeats::Played).size(), 20000U);
        const auto graces = read(
            score(bar(note("C4 4") + QByteArray("<note><grace/><rest/></note>").repeated(200000))));
        QCOMPARE(std::get<WrittenPiece>(graces).notes.size(), 200000U);
    }

    void unpacksNoMoreThanAScore()
    {
        QTemporaryDir folder;
        writeFile(folder.filePath(u"META-INF/container.xml"_s),
            "<container><rootfiles><rootfile full-path='in/a.xml'/></rootfiles></container>");
        writeFile(folder.filePath(u"in/a.xml"_s), score(bar(twoFour + note("C4 4"))));
        writeFile(folder.filePath(u"bomb.xml"_s), QByteArray(int(largestScore) * 3, ' '));
        const auto loaded = [&](const QString &name, const QStringList &contents) {
            QProcess zip;
            zip.setWorkingDirectory(folder.path());
            zip.start(u"zip"_s, QStringList{u"-q"_s, u"-r"_s, name} + contents);
            [&] { QVERIFY(zip.waitForFinished()); }();
            return loadPiece(folder.filePath(name).toStdString());
        };
        const auto named = loaded(u"a.mxl"_s, {u"bomb.xml"_s, u"META-INF"_s, u"in"_s});
        QCOMPARE(std::get<Piece>(named).notes.size(), 1U);
        const auto bomb = loaded(u"b.mxl"_s, {u"bomb.xml"_s});
        QVERIFY(std::get<ReadFault>(bomb) == ReadFault::TooLarge);
        const auto nothing = loaded(u"c.mxl"_s, {u"META-INF"_s});
        QVERIFY(std::get<ReadFault>(nothing) == ReadFault::Unknown);
        QByteArray broken = kelo::test::readFile(folder.filePath(u"a.mxl"_s));
        for (int i = 40; i < broken.size(); i += 7)
            broken[i] = 'x';
        writeFile(folder.filePath(u"d.mxl"_s), broken);
        QVERIFY(std::holds_alternative<ReadFault>(
            loadPiece(folder.filePath(u"d.mxl"_s).toStdString())));
    }

    void tellsHandsApart_data()
    {
        // Notes as "pitch/track/channel", one after the other or joined by "+".
        const Table<QString, QStringList, QList<int>, QString> row{
            "notes", "names", "programs", "hands"};
        row("two tracks", u"72/1/0+48/2/1 74/1/0"_s, {}, {}, u"RLR"_s);
        row("names of tracks", u"60/0/0+72/1/0"_s, {u"Right Hand"_s, u"LH"_s}, {}, u"RL"_s);
        row("drums are nobody's", u"72/1/0+48/2/1+36/3/9"_s, {}, {}, u"RLB"_s);
        row("a low melody is the right hand's", u"55/0/0 57/0/0 59/0/0 60/0/0 62/0/0"_s, {}, {},
            u"RRRRR"_s);
        row("a bass line is the left hand's", u"36/0/0 38/0/0 43/0/0 36/0/0"_s, {}, {}, u"LLLL"_s);
        row("one track with both hands", u"48/0/0+64/0/0+72/0/0 55/0/0 43/0/0+74/0/0 55/0/0"_s, {},
            {}, u"LRRLLRL"_s);
        row("both below middle C", u"36/0/0+43/0/0+55/0/0 57/0/0+36/0/0 59/0/0+36/0/0"_s, {}, {},
            u"LLRRLRL"_s);
        row("the piano of a band", u"72/1/0+48/2/0+60/3/1+67/4/2+50/5/3"_s, {}, {0, 48, 40, 32},
            u"RLBBB"_s);
    }

    void tellsHandsApart()
    {
        QFETCH(QString, notes);
        QFETCH(QStringList, names);
        QFETCH(QList<int>, programs);
        Piece piece;
        double at = 0;
        for (const QString &chord : notes.split(u' ')) {
            for (const QString &each : chord.split(u'+')) {
                const QStringList parts = each.split(u'/');
                piece.notes.push_back(
                    {at, 0.4, parts[0].toInt(), 80, parts[1].toInt(), parts[2].toInt()});
            }
            at += 0.5;
        }
        for (const QString &name : names)
            piece.trackNames.push_back(name.toStdString());
        for (int channel = 0; channel < programs.size(); ++channel)
            piece.messages.push_back({0,
                {static_cast<unsigned char>(0xc0 | channel),
                    static_cast<unsigned char>(programs[channel]), 0}});
        QTEST(hands(piece), "hands");
    }

    /// Played by one track alone, which hands are the other's? In thousandths of the notes: wrong,
    /// and which of two readings; and what is asked.
    void saysWhenItIsUnsure()
    {
        const Library library{{}};
        QStringList found;
        for (std::size_t song = 0; song < library.size(); ++song) {
            const Piece written = studied(std::get<Piece>(library.load(song)));
            QVERIFY(!handsInDoubt(written));
            Piece piece = written;
            piece.written.reset();
            piece.marks.clear();
            for (Note &each : piece.notes)
                each.track = each.channel = 0;
            const auto wrong = [&](const Piece &read) {
                std::size_t count = 0;
                for (std::size_t i = 0; i < read.notes.size(); ++i)
                    count += handsOf(read)[i] != written.marks[i].hand;
                return QString::number(1000 * count / read.notes.size());
            };
            const auto doubt = handsInDoubt(piece);
            found << wrong(piece) + u' ' + wrong(withReading(piece, 2))
                    + (doubt ? u' ' + QString::fromUtf8(doubt->firstIs.data()) : QString());
        }
        QCOMPARE(found.join(u", "_s),
            u"29 194 it is for the right one, 11 11, 0 0, 0 0, 103 128 it is for the right one, "
            "113 113, 534 534, 244 442 all for one hand"_s);
    }

    void writesDownWhatIsPlayed()
    {
        // Every shipped song, written down again from its sound, has its notes on its own grid.
        const Library library{{}};
        int sum = 0;
        for (std::size_t song = 0; song < library.size(); ++song) {
            const Piece piece = std::get<Piece>(library.load(song));
            const auto written = writtenOf(piece);
            QCOMPARE(written->notes.size(), piece.notes.size());
            QCOMPARE(written->bars.size(), piece.bars.size());
            int odd = 0;
            for (const WrittenNote &each : written->notes)
                odd +=
                    each.at % (writtenQuarter / 4) != 0 || each.length % (writtenQuarter / 4) != 0;
            QVERIFY2(odd == 0, library.names()[song].title.c_str());
            sum = qChecksum(QByteArray::number(sum) + told(written).join(u'/').toUtf8()
                + everythingOf(studied(piece)));
            const auto phrases = phrasesOf(*written);
            QCOMPARE(phrases.front().from, 0);
            QCOMPARE(phrases.back().to, written->bars.back().end());
            for (std::size_t i = 0; i < phrases.size(); ++i) {
                QVERIFY(phrases[i].to > phrases[i].from);
                QVERIFY(phrases[i].to - phrases[i].from <= 8 * written->bars[1].length);
                QVERIFY(i == 0 || phrases[i].from == phrases[i - 1].to);
            }
        }
        QCOMPARE(sum, 11053);
        const auto minuet = writtenOf(std::get<Piece>(library.load(4)));
        const auto phrases = phrasesOf(*minuet);
        QCOMPARE(minuet->bars[0].beats, 3);
        // Its first half is twice eight bars: a phrase begins at the ninth.
        QVERIFY(std::ranges::find(phrases, minuet->bars[8].at, &Stretch::from) != phrases.end());
    }

    void absurdBarsStayInOrder()
    {
        Piece piece;
        piece.beats = 255;
        piece.unit = 1;
        for (int bar = 0; bar < 500; ++bar)
            piece.bars.push_back(bar / 2 * 1e-7);
        piece.notes = {{0, 1, 60, 80}, {80000, 1, 62, 80}};
        measureLength(piece);
        const auto written = writtenOf(piece);
        QVERIFY(std::ranges::is_sorted(written->bars, {}, &WrittenBar::at));
        QVERIFY(written->notes.front().at < written->notes.back().at);
    }

    void tellsOnlyWhatChanged()
    {
        Piece piece = std::get<Piece>(Library{{}}.load(4)); // Minuet in G
        Walk walk(writtenOf(piece));
        Description description;
        QStringList said;
        const auto tell = [&] {
            said << QString::fromStdString(description.tell(walk, walk.here(), walk.hands()));
        };
        tell();
        for (int i = 0; i < 6; ++i) {
            QVERIFY(walk.step(1));
            tell();
        }
        QCOMPARE(said,
            QStringList({u"Bar one, G major, one sharp, three four time. Right hand: D five, "
                         "quarter. Left hand: G three B D four, half."_s,
                u"Right hand: G four, eighth."_s, u"A."_s,
                u"Right hand: B. Left hand: A three, quarter."_s, u"Right hand: C five."_s,
                u"Bar two. Right hand: D, quarter. Left hand: B, dotted half."_s,
                u"Right hand: G four."_s}));
        QVERIFY(!walk.toBar(999) && walk.toBar(12));
        walk.setUnit(WalkUnit::Bar);
        QVERIFY(walk.setHands(Hands::Left));
        description.forget();
        said.clear();
        tell();
        QCOMPARE(said.front(),
            u"Bar 12, G major, one sharp, three four time. B three, quarter; C four, eighth; "
            "B three; A; G."_s.replace(u"12"_s, u"twelve"_s));
        QCOMPARE(QString::fromStdString(spelledChord(walk, 0)),
            u"G three, B, D four, D five. G major."_s);
        walk.setUnit(WalkUnit::Beat);
        QCOMPARE(walk.here().to - walk.here().from, writtenQuarter);
        QCOMPARE(QString::fromStdString(placeOf(walk.barAt(walk.here().from), walk.here().to)),
            u"bar twelve, beat two"_s);
        while (walk.step(-1)) { }
        QVERIFY(walk.here().from == 0 && !walk.beside(-1));
    }
};

QTEST_APPLESS_MAIN(WrittenTest)
#include "written_test.moc"
