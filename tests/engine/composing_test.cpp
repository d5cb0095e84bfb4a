#include "composing/accompaniment.h"
#include "composing/arrangements.h"
#include "composing/backing_band.h"
#include "composing/composer.h"
#include "composing/devices.h"
#include "composing/jam.h"
#include "composing/music_xml.h"
#include "composing/score_file.h"
#include "composing/transcription.h"
#include "composing/variations.h"
#include "lessons/jazz_course.h"
#include "music/midi_file.h"
#include "sums.h"
#include "support/table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

/// "60@0+24": pitch, place and length of each tone of a part.
QString text(const Score &score, int part = 0)
{
    QStringList all;
    for (const Tone &tone : score.partTones(part))
        all << u"%1@%2+%3"_s.arg(tone.pitch).arg(tone.at).arg(tone.length);
    return all.join(u' ');
}

/// Roots of the chords, a bar each: "C F G7" is "0 5 7".
QString roots(const Score &score)
{
    QStringList all;
    for (const Harmony &harmony : score.harmony)
        all << QString::number(harmony.root) + (harmony.third == 3 ? u"m"_s : QString());
    return all.join(u' ');
}

/// Pieces as they are played, and their names: one number that changes with any of it.
int sumOf(std::initializer_list<Score> scores, QByteArray all = {})
{
    for (const Score &score : scores) {
        const auto midi = midiOf(score);
        all.append(reinterpret_cast<const char *>(midi.data()), qsizetype(midi.size()));
        all += score.title + roots(score).toStdString();
    }
    return qChecksum(all);
}

/// As someone plays: quarters of `period` seconds, each a little early or late.
std::vector<Note> played(
    const QList<std::pair<int, double>> &tones, double period, double jitter, unsigned seed = 3)
{
    std::minstd_rand random(seed);
    std::uniform_real_distribution<double> early(-jitter, jitter);
    std::vector<Note> notes;
    double at = 5;
    for (const auto &[pitch, quarters] : tones) {
        if (pitch > 0)
            notes.push_back({at + early(random), quarters * period * 0.9, pitch, 80, 0, 0});
        at += quarters * period;
    }
    return notes;
}

using Tune = QList<std::pair<int, double>>;

const Tune joy{{64, 1}, {64, 1}, {65, 1}, {67, 1}, {67, 1}, {65, 1}, {64, 1}, {62, 1}, {60, 1},
    {60, 1}, {62, 1}, {64, 1}, {64, 1.5}, {62, 0.5}, {62, 2}};
const Tune waltz{{67, 2}, {69, 1}, {71, 2}, {69, 1}, {67, 2}, {62, 1}, {67, 3}, {67, 2}, {69, 1},
    {71, 2}, {72, 1}, {74, 2}, {71, 1}, {67, 3}};

Score theme(const Tune &tune)
{
    Score score = transcribe(played(tune, 0.6, 0));
    harmonise(score);
    return score;
}

bool inScale(const Tonality &key, int pitch)
{
    const bool leading = key.minor && (pitch - key.tonic) % 12 == 11;
    return leading || pitchOf(key, degreeOf(key, pitch)) == pitch;
}

} // namespace

Q_DECLARE_METATYPE(Tune)
Q_DECLARE_METATYPE(Mood)

class ComposingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void makesUpWholePieces_data()
    {
        const Table<Mood, int, bool, QList<int>, int> row{
            "mood", "beats", "minor", "tempos", "sum"};
        row("happy", Mood::Happy, 4, false, {112, 132}, 46578);
        row("calm", Mood::Calm, 4, false, {66, 80}, 52260);
        row("sad", Mood::Sad, 4, true, {58, 72}, 59015);
        row("waltz", Mood::Waltz, 3, false, {132, 156}, 27575);
        row("march", Mood::March, 4, false, {104, 116}, 1317);
        row("mysterious", Mood::Mysterious, 3, true, {76, 92}, 21651);
    }

    void makesUpWholePieces()
    {
        QFETCH(Mood, mood);
        QFETCH(int, beats);
        QFETCH(bool, minor);
        QFETCH(QList<int>, tempos);
        std::set<QString> melodies;
        std::set<int> lengths;
        int sum = 0;
        for (unsigned seed = 0; seed < 40; ++seed) {
            const Score score = makeUp({mood, {}}, seed);
            QVERIFY(text(score) == text(makeUp({mood, {}}, seed)));
            sum = sumOf({score}, QByteArray::number(sum));
            melodies.insert(text(score));
            lengths.insert(score.bars());
            QVERIFY2(score.bars() >= 24 && score.bars() <= 48, qPrintable(text(score)));
            QCOMPARE(score.metre.beats, beats);
            QCOMPARE(score.key.minor, minor);
            QVERIFY(score.tempo >= tempos[0] && score.tempo <= tempos[1]);
            QCOMPARE(score.parts.size(), 2U);
            int last = -1;
            for (const Tone &tone : score.tones) {
                const QString where = u"%1 at %2"_s.arg(tone.pitch).arg(tone.at);
                QVERIFY2(inScale(score.key, tone.pitch), qPrintable(where));
                QVERIFY2(tone.part == 0 ? tone.pitch >= 60 && tone.pitch <= 108
                                        : tone.pitch >= 33 && tone.pitch <= 72,
                    qPrintable(where));
                QVERIFY2(tone.length > 0 && tone.velocity > 30 && tone.velocity < 112,
                    qPrintable(where));
                if (tone.part > 0)
                    continue;
                QVERIFY2(tone.at >= last, qPrintable(where)); // one voice
                last = tone.at + tone.length;
                // What begins a bar belongs to its chord.
                const auto bar = static_cast<std::size_t>(tone.at / score.barTicks());
                if (tone.at % score.barTicks() == 0 && bar % 8 == 0)
                    QVERIFY2(contains(score.harmony[bar], tone.pitch), qPrintable(where));
            }
            QCOMPARE(score.harmony.back().root, score.key.tonic);
            QVERIFY(contains(score.harmony.back(), score.partTones(0).back().pitch));
            // The first section comes back somewhere.
            const auto roots8 = roots(score).split(u' ').mid(0, 8);
            QVERIFY(roots(score).count(roots8.join(u' ')) >= 2);
        }
        QTEST(sum, "sum");
        QVERIFY(melodies.size() > 38);
        QVERIFY(lengths.size() > 2); // forms differ
        const Score wished = makeUp({mood, Tonality{3, true}}, 1);
        QVERIFY((wished.key == Tonality{3, true}));
    }

    void writesDownWhatIsPlayed_data()
    {
        const Table<Tune, double, double, QString> row{"tune", "period", "jitter", "reading"};
        const QString inC = u"In C major, 4 4. Bar 1: E quarter, E quarter, F quarter, G quarter. "
                            "Bar 2: G quarter, F quarter, E quarter, D quarter. Bar 3: C quarter, "
                            "C quarter, D quarter, E quarter. Bar 4: E dotted quarter, D eighth, D "
                            "half."_s;
        const QString inG =
            u"In G major, 3 4. Bar 1: G half, A quarter. Bar 2: B half, A quarter. Bar 3: G "
            u"half, "
            "D quarter. Bar 4: G dotted half. Bar 5: G half, A quarter. Bar 6: B half, C "
            "quarter. Bar 7: D half, B quarter. Bar 8: G dotted half."_s;
        row("exactly", joy, 0.6, 0.0, inC);
        row("as people play", joy, 0.6, 0.03, inC);
        row("slowly", joy, 0.85, 0.03, inC);
        row("fast", joy, 0.42, 0.02, inC);
        row("a waltz", waltz, 0.5, 0.02, inG);
        row("a slow waltz", waltz, 0.66, 0.02, inG);
        row("one note", {{61, 1}}, 0.6, 0.0, u"In C sharp minor, 4 4. Bar 1: C sharp quarter."_s);
    }

    void writesDownWhatIsPlayed()
    {
        QFETCH(Tune, tune);
        QFETCH(double, period);
        QFETCH(double, jitter);
        const Score score = transcribe(played(tune, period, jitter));
        QTEST(QString::fromStdString(readBack(score)), "reading");
        QVERIFY(std::abs(score.tempo - 60 / period) < 60 / period * 0.04 || tune.size() < 2);
    }

    void makesTheSameOfATuneEachTime()
    {
        QList<int> sums;
        for (unsigned seed = 0; seed < 48; ++seed) {
            Chance chance(seed);
            Tune tune;
            int pitch = 60 + chance.below(12);
            for (int i = 0; i < 10 + chance.below(40); ++i) {
                const double length =
                    chance.of(QList{0.25, 0.5, 0.5, 1.0, 1.0, 1.0, 1.5, 2.0, 3.0});
                tune << std::pair(chance.oneIn(9) ? 0 : pitch, length);
                pitch = std::clamp(pitch + chance.of(QList{-5, -3, -2, -1, 1, 2, 2, 4, 7}), 50, 85);
            }
            auto notes = played(tune, 0.36 + 0.013 * seed, seed % 3 == 0 ? 0.03 : 0);
            for (Note &note : notes) {
                note.velocity = std::uint8_t(40 + chance.below(80));
                note.duration *= chance.of(QList{0.3F, 0.7F, 1.0F, 1.2F});
            }
            for (int i = 0; i < 12 && seed % 4 == 0; ++i) { // an accompaniment
                const Note &above = notes[std::size_t(chance.below(int(notes.size())))];
                notes.push_back(
                    {above.at, above.duration, above.pitch - chance.below(20), 60, 0, 0});
            }
            std::ranges::stable_sort(notes, {}, &Note::at);
            Score made = transcribe(notes);
            QByteArray all = readBack(made).c_str() + QByteArray::number(barsToTrade(made));
            harmonise(made);
            made.title = "Tune";
            all += musicXml(made) + themeToJson(made);
            append(made, transcribe(notes, &made));
            QList<Score> scores{made, answerTo(made, 2 + chance.below(7), seed)};
            scores << variationOf(made, int(seed % variationCount))
                   << arrange(made, static_cast<Arrangement>(seed % 4))
                   << deviceAt(seed % 8).apply(made);
            Piece piece = pieceOf(made);
            if (seed % 2 == 0)
                piece.bars.clear();
            scores << themeOf(piece, "A theme");
            accompany(
                scores[0], {"Left"}, static_cast<Figure>(seed % 14), 36 + chance.below(24), 50);
            for (const Score &score : scores)
                all += QByteArray::number(sumOf({score}))
                    + (musicXml(score) + readBack(score)).c_str();
            if (seed % 8 == 0)
                sums << 0;
            sums.last() = qChecksum(all + QByteArray::number(sums.last()));
        }
        QCOMPARE(unlikeKept(u"tunes"_s, sums), QString());
    }

    void knowsItsKeysAndChords()
    {
        QByteArray all;
        for (int tonic = 0; tonic < 12; ++tonic) {
            for (const bool minor : {false, true}) {
                const Tonality key{tonic, minor};
                all += nameOf(key).c_str() + QByteArray::number(sharpsOf(key));
                for (int degree = -9; degree < 10; ++degree) {
                    const Harmony triad = triadOn(key, degree);
                    for (const int each : {pitchOf(key, degree), degreeOf(key, 60 + 2 * degree),
                             triad.root, triad.third, triad.fifth})
                        all += QByteArray::number(each) + ' ';
                }
            }
        }
        QCOMPARE(unlikeKept(u"keys"_s, {qChecksum(all)}), QString());
        all.clear();
        for (int held = 1; held < 4096; ++held) {
            std::vector<int> pitches;
            for (int pitch = 0; pitch < 12; ++pitch) {
                if ((held >> pitch & 1) != 0)
                    pitches.push_back(48 + pitch + (pitch * held % 3 == 1 ? 12 : 0));
            }
            if (const auto heard = harmonyOf(pitches))
                all += char(heard->root) + QByteArray::number(heard->third * 10 + heard->fifth);
            PitchClassWeights weights{};
            for (const int pitch : pitches)
                weights[std::size_t(pitch % 12)] += 1 + pitch % 4;
            const Tonality key = tonalityOf(weights);
            all += QByteArray::number(key.minor ? -key.tonic : key.tonic);
        }
        QCOMPARE(unlikeKept(u"harmonies"_s, {qChecksum(all)}), QString());
        QString moods;
        for (int hour = 0; hour < 24; ++hour)
            moods += QString::number(int(moodAt(hour)));
        QCOMPARE(moods, u"555550000000444333311111"_s);
    }

    void goesOnInTheSameTempo()
    {
        Score piece = theme(joy);
        const Score more = transcribe(played({{60, 2}, {67, 2}}, 0.6, 0.02), &piece);
        append(piece, more);
        QCOMPARE(piece.bars(), 5);
        QVERIFY(text(piece).endsWith(u"60@384+48 67@432+48"_s));
        QVERIFY(transcribe({}).tones.empty());
    }

    void harmonises()
    {
        QCOMPARE(roots(theme(joy)), u"0 7 0 7"_s);
        QCOMPARE(roots(theme(waltz)), u"7 4m 7 4m 0 7 2 7"_s);
        Score minor = transcribe(played(
            {{57, 1}, {60, 1}, {64, 1}, {57, 1}, {62, 2}, {65, 2}, {64, 2}, {68, 2}, {57, 4}}, 0.6,
            0));
        minor.key = {9, true};
        harmonise(minor);
        QCOMPARE(roots(minor), u"9m 2m 4 9m"_s);
    }

    void variesTheMelodyOnly()
    {
        const Score tune = theme(joy);
        std::set<QString> melodies{text(tune)};
        for (int which = 0; which < variationCount; ++which) {
            const Score varied = variationOf(tune, which);
            QCOMPARE(roots(varied), roots(tune));
            QCOMPARE(varied.bars(), tune.bars());
            melodies.insert(text(varied));
            int last = 0;
            for (const Tone &tone : varied.tones) {
                QVERIFY(tone.at >= last && tone.length > 0);
                last = tone.at + tone.length;
            }
        }
        QCOMPARE(melodies.size(), std::size_t{variationCount} + 1);
        QVERIFY(text(variationOf(tune, 0)).startsWith(u"64@0+12 65@12+12 64@24+12 65@36+12"_s));
        QVERIFY(text(variationOf(tune, 1)).startsWith(u"64@0+36 64@36+12 65@48+36 67@84+12"_s));
        QVERIFY(text(variationOf(tune, 2)).startsWith(u"64@0+6 67@6+6 72@12+6 67@18+6"_s));
        QVERIFY(text(variationOf(tune, 3)).startsWith(u"64@0+24 64@24+24 64@48+24"_s));
        QVERIFY(text(variationOf(tune, 4)).startsWith(u"77@0+6 76@6+6 74@12+6 76@18+6"_s));
        const Score other = theme(waltz);
        QCOMPARE(sumOf({variationOf(tune, 0), variationOf(tune, 1), variationOf(tune, 2),
                     variationOf(tune, 3), variationOf(tune, 4), variationOf(other, 0),
                     variationOf(other, 1), variationOf(other, 2), variationOf(other, 3),
                     variationOf(other, 4)}),
            31722);
    }

    void arrangesSoThatOneCanTell_data()
    {
        // programs in the order of parts; drums are -1; the melody's lowest and highest pitch
        const Table<Arrangement, int, QList<int>, QList<int>, int> row{
            "arrangement", "tempo", "programs", "range", "sum"};
        row("band", Arrangement::Band, 100, {0, 25, 33, -1}, {72, 79}, 14516);
        row("lullaby", Arrangement::Lullaby, 58, {10, 46, 48}, {84, 91}, 30250);
        row("video game", Arrangement::VideoGame, 168, {80, 81, 38, -1}, {72, 79}, 19459);
        row("film score", Arrangement::FilmScore, 76, {60, 48, 48, 52, 48, 47}, {60, 67}, 19275);
    }

    void arrangesSoThatOneCanTell()
    {
        QFETCH(Arrangement, arrangement);
        const Score tune = theme(joy);
        const Score score = arrange(tune, arrangement);
        QTEST(sumOf({score, arrange(theme(waltz), arrangement)}), "sum");
        QTEST(score.tempo, "tempo");
        QList<int> programs;
        for (const Part &part : score.parts)
            programs << (part.drums ? -1 : part.program);
        QTEST(programs, "programs");
        const auto melody = score.partTones(0);
        QCOMPARE(melody.size(), tune.tones.size());
        const auto [low, high] = std::ranges::minmax(melody, {}, &Tone::pitch);
        QTEST(QList<int>({low.pitch, high.pitch}), "range");
        QCOMPARE(roots(score), roots(tune));
        for (int part = 1; part < static_cast<int>(score.parts.size()); ++part)
            QVERIFY(!score.partTones(part).empty());
        const Piece piece = pieceOf(score);
        for (const Note &note : piece.notes)
            QCOMPARE(note.channel == 9, score.parts[static_cast<std::size_t>(note.track)].drums);
    }

    void teachesIdeas_data()
    {
        const Table<int, QString, int> row{"which", "tones", "sum"};
        const QString motif = u"64@0+24 64@24+24 65@48+24 67@72+24 67@96+24 65@120+24 64@144+24 "
                              "62@168+24"_s;
        row("sequence", 0, motif + u" 65@192+24 65@216+24 67@240+24"_s, 30497);
        row("inversion", 1, motif + u" 64@192+24 64@216+24 62@240+24 60@264+24"_s, 53202);
        row("imitation", 2, motif, 31865);
        row("pedal note", 3, motif, 33106);
        row("augmentation", 4, motif + u" 64@192+48 64@240+48 65@288+48"_s, 24839);
        row("diminution", 5, motif + u" 64@192+12 64@204+12 65@216+12"_s, 9546);
        row("suspension", 6, u"65@0+12 64@12+12 64@24+24 65@48+24 67@72+24 69@96+12 67@108+12"_s,
            56771);
        row("retrograde", 7, motif + u" 62@192+24 64@216+24 65@240+24"_s, 1170);
    }

    void teachesIdeas()
    {
        QFETCH(int, which);
        QFETCH(QString, tones);
        const Device &device = deviceAt(static_cast<std::size_t>(which));
        QCOMPARE(QString::fromUtf8(device.name.data()).toLower(),
            QString::fromUtf8(QTest::currentDataTag()));
        const Score example = device.apply(theme(joy));
        QTEST(sumOf({example, device.apply(theme(waltz))}), "sum");
        QVERIFY2(text(example).startsWith(tones), qPrintable(text(example)));
        if (which == 2)
            QVERIFY(text(example, 1).startsWith(u"52@96+24 52@120+24"_s));
        if (which == 3)
            QCOMPARE(text(example, 1), u"36@0+192"_s);
        QVERIFY(
            !device.apply(Score{}).tones.empty() || which != 3); // nothing to work on is no harm
    }

    void answersInKeyAndLength()
    {
        const Score phrase = transcribe(played(joy, 0.6, 0.02));
        QCOMPARE(barsToTrade(phrase), 4);
        QCOMPARE(barsToTrade(transcribe(played(waltz, 0.5, 0))), 8);
        std::set<QString> answers;
        int sum = 0;
        for (unsigned seed = 0; seed < 20; ++seed) {
            const Score answer = answerTo(phrase, 4, seed);
            QCOMPARE(text(answer), text(answerTo(phrase, 4, seed)));
            sum = sumOf({answer}, QByteArray::number(sum));
            answers.insert(text(answer));
            QCOMPARE(answer.bars(), 4);
            QCOMPARE(answer.harmony.size(), 4U);
            QVERIFY(answer.key == phrase.key && answer.tempo == phrase.tempo);
            for (const Tone &tone : answer.partTones(0))
                QVERIFY(inScale(phrase.key, tone.pitch) && tone.pitch >= 55 && tone.pitch <= 88);
            QCOMPARE(answer.partTones(0).back().pitch % 12, phrase.key.tonic);
            QCOMPARE(answer.partTones(0).back().at, 3 * answer.barTicks());
        }
        QCOMPARE(sum, 54956);
        QVERIFY(answers.size() > 5);
        QVERIFY(answers.count(text(phrase)) == 0);
    }

    void opensInANotationProgramWithoutAComplaint()
    {
        const QString program = QStandardPaths::findExecutable(u"musescore3"_s);
        if (program.isEmpty())
            QSKIP("musescore3 is not installed");
        QTemporaryDir folder;
        std::vector<Score> scores{makeUp({Mood::Sad}, 3), arrange(theme(joy), Arrangement::Band)};
        for (int which = 0; which < variationCount; ++which)
            scores.push_back(variationOf(makeUp({Mood::Happy}, 29), which));
        scores[0].title = "Ann & <Bob>";
        QProcess musescore;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, folder.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, folder.path());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        musescore.setProcessEnvironment(environment);
        musescore.setProcessChannelMode(QProcess::MergedChannels);
        for (const Score &score : scores) {
            const auto midi = midiOf(score);
            const QByteArray bytes(
                reinterpret_cast<const char *>(midi.data()), qsizetype(midi.size()));
            for (const auto &[name, contents] : {std::pair(u"a.mid"_s, bytes),
                     std::pair(u"a.musicxml"_s, QByteArray::fromStdString(musicXml(score)))}) {
                QFile file(folder.filePath(name));
                QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) > 0);
                file.close();
                musescore.start(program, {u"-o"_s, folder.filePath(u"b.mscx"_s), file.fileName()});
                QVERIFY(musescore.waitForFinished(120'000) && musescore.exitCode() == 0);
                const QByteArray said = musescore.readAll();
                for (const char *complaint : {"rror", "nvalid", "not a valid", "unknown"})
                    QVERIFY2(!said.contains(complaint), said.constData());
            }
        }
    }

    void writesScoresThatOthersRead()
    {
        Score score = arrange(theme(joy), Arrangement::Band);
        score.title = "Ann & <Bob>";
        score.tones.push_back({90, 20, 61, 80, 0}); // over the bar line, and a black key
        score.sort();
        const QString written = QString::fromStdString(musicXml(score));
        QCOMPARE(qChecksum(written.toUtf8()), 5193);
        QXmlStreamReader xml(written);
        int part = 0;
        int measures = 0;
        int length = 0;
        bool chord = false;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == u"part")
                ++part;
            if (xml.isStartElement() && xml.name() == u"note")
                chord = false;
            if (xml.isStartElement() && xml.name() == u"chord")
                chord = true;
            if (xml.isStartElement() && xml.name() == u"work-title")
                QCOMPARE(xml.readElementText(), u"Ann & <Bob>"_s);
            if (xml.isStartElement() && xml.name() == u"duration" && !chord)
                length += xml.readElementText().toInt();
            if (xml.isEndElement() && xml.name() == u"measure") {
                ++measures;
                QCOMPARE(std::exchange(length, 0), score.barTicks());
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(part, 3); // the drums have no staff
        QCOMPARE(measures, 3 * score.bars());
        const auto read = readMidiFile(midiOf(theme(waltz)));
        const auto &piece = std::get<Piece>(read);
        QCOMPARE(piece.bars.size(), 8U);
        QVERIFY(std::abs(piece.bars[1] - 1.8) < 0.01 && piece.spelling == Spelling::Sharps);
    }

    void theDraftOutlivesTheEngine()
    {
        const Score tune = theme(waltz);
        const auto read = themeFromJson(themeToJson(tune));
        QVERIFY(read && read->tones == tune.tones && read->metre == tune.metre);
        QVERIFY(read->key == tune.key && read->tempo == tune.tempo);
        QCOMPARE(roots(*read), roots(tune));
        for (const char *bad : {"", "[]", "{}", "{\"tones\":[]}", "{\"tones\":7}"})
            QVERIFY2(!themeFromJson(bad), bad);
        const QList<std::tuple<QString, int, int>> bounds{{u"tonic"_s, 0, 11}, {u"minor"_s, 0, 1},
            {u"beats"_s, 1, 12}, {u"unit"_s, 2, 8}, {u"tempo"_s, 30, 300}, {u"at"_s, 0, 1 << 20},
            {u"length"_s, 1, 1 << 20}, {u"pitch"_s, 0, 127}, {u"velocity"_s, 1, 127}};
        for (const auto &[name, least, most] : bounds) {
            for (const int value : {least - 1, least, least + 1, most, most + 1}) {
                QJsonObject tone{
                    {u"at"_s, 0}, {u"length"_s, 24}, {u"pitch"_s, 60}, {u"velocity"_s, 80}};
                QJsonObject json{{u"tonic"_s, 0}, {u"minor"_s, 0}, {u"beats"_s, 4}, {u"unit"_s, 4},
                    {u"tempo"_s, 100}};
                (tone.contains(name) ? tone : json)[name] = value;
                QJsonArray tones{tone};
                while (name == u"tonic" && value == 0 && tones.size() <= 10'000)
                    tones << tone;
                json[u"tones"_s] = tones;
                const auto theme = themeFromJson(QJsonDocument(json).toJson().toStdString());
                const bool odd = name == u"unit" && value == 3; // no note has such a length
                QCOMPARE(theme.has_value(), value >= least && value <= most && !odd);
                QVERIFY(!theme || theme->tones.size() == (tones.size() > 1 ? 10'000U : 1U));
            }
        }
    }

    void everyJazzLessonCanBePlayed()
    {
        std::set<std::string_view> titles;
        int sum = 0;
        for (std::size_t i = 0; i < jazzLessonCount; ++i) {
            const JazzLesson &lesson = jazzLesson(i);
            titles.insert(lesson.title);
            const Piece piece = jazzExample(lesson, 0);
            QVERIFY2(piece.notes.size() >= 4, lesson.title.data());
            QCOMPARE(jazzExample(lesson, -2).notes[0].pitch, piece.notes[0].pitch - 2);
            const Score band = jazzBand(lesson.chords, 120, 2);
            sum = sumOf({band}, QByteArray::number(sum) + everythingOf(piece));
            const auto chords = std::ranges::count(lesson.chords, ' ') + 1;
            QCOMPARE(static_cast<std::ptrdiff_t>(band.harmony.size()), 2 * chords);
            for (const Tone &tone : band.partTones(0)) {
                const auto bar = static_cast<std::size_t>(tone.at / band.barTicks());
                QVERIFY(contains(band.harmony[bar], tone.pitch) && tone.pitch < 64);
            }
            QVERIFY(!band.partTones(1).empty());
        }
        QCOMPARE(sum, 16224);
        QCOMPARE(titles.size(), jazzLessonCount);
        QVERIFY((chordFrom("Bb7") == Harmony{10, 4, 7}) && (chordFrom("F#m7") == Harmony{6, 3, 7}));
        QVERIFY(!chordFrom("") && !chordFrom(" ") && !chordFrom("H"));
    }
};

QTEST_APPLESS_MAIN(ComposingTest)
#include "composing_test.moc"
