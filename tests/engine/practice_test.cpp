#include "lessons/exercises.h"
#include "practice/practice_log.h"
#include "practice/practice_plan.h"
#include "sums.h"
#include "support/files.h"
#include "support/table.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

constexpr std::chrono::local_days firstDay{std::chrono::year(2025) / 3 / 1};

std::chrono::local_seconds noonOf(int day)
{
    return firstDay + std::chrono::days(day) + std::chrono::seconds(12 * 3600 + 34 * 60 + 56);
}

/// "D3 b5 w2 t80 left Piece": the day, the bar, wrong keys, percent; both hands and a piece "A"
/// unless something else is said.
std::vector<PlayedBar> playedFrom(const QString &text)
{
    std::vector<PlayedBar> played;
    for (const QString &each : text.split(u", "_s, Qt::SkipEmptyParts)) {
        PlayedBar bar{.at = noonOf(0), .piece = "A"};
        for (const QString &word : each.split(u' ')) {
            const int number = word.mid(1).toInt();
            if (word.startsWith(u'D'))
                bar.at = noonOf(number);
            else if (word.startsWith(u'b'))
                bar.bar = number;
            else if (word.startsWith(u'w'))
                bar.wrong = number;
            else if (word.startsWith(u't'))
                bar.tempo = number;
            else if (word == u"left" || word == u"right")
                bar.hands = word == u"left" ? Hands::Left : Hands::Right;
            else
                bar.piece = word.toStdString();
        }
        played.push_back(bar);
    }
    return played;
}

QString textOf(const Assignment &part)
{
    return u"%1 %2-%3 %4 w%5 %6 days"_s.arg(QString::fromStdString(part.piece))
        .arg(part.first)
        .arg(part.last)
        .arg(QLatin1StringView(nameOf(part.hands).data()))
        .arg(part.wrong)
        .arg(part.days);
}

} // namespace

/// What is remembered of practice, and what is made of it.
class PracticeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spacesAsSm2Does_data()
    {
        const Table<QString, QString> row{"played", "known"}; // grade, days until due, ease
        row("the first time", u"D0 t100"_s, u"5 1 2.60"_s);
        row("the second", u"D0 t100, D1 t100"_s, u"5 6 2.70"_s);
        row("the third", u"D0 t100, D1 t100, D7 t100"_s, u"5 16 2.80"_s);
        row("clean, but slowly", u"D0 t89, D1 t50, D7"_s, u"4 15 2.50"_s);
        row("one wrong key is remembered", u"D0 w1, D1 w1"_s, u"3 6 2.22"_s);
        row("two are not", u"D0 t100, D1 w2"_s, u"2 1 2.28"_s);
        row("nor more of them", u"D0 w3, D1 w40"_s, u"1 1 1.42"_s);
        row("never too hard", u"D0 w9, D1 w9, D2 w9, D3 w9"_s, u"1 1 1.30"_s);
        row("the first time of a day counts", u"D0 w2, D0 t100, D0 t100"_s, u"2 1 2.18"_s);
        row("no longer than a year", u"D0 t100, D1 t100, D7 t100, D30 t100, D90 t100, D300 t100"_s,
            u"5 365 3.10"_s);
    }

    void spacesAsSm2Does()
    {
        QFETCH(QString, played);
        const auto known = knownBars(playedFrom(played));
        QCOMPARE(known.size(), 1U);
        QTEST(u"%1 %2 %3"_s.arg(known[0].grade)
                  .arg((known[0].due - known[0].last).count())
                  .arg(known[0].ease, 0, 'f', 2),
            "known");
    }

    void plansADay_data()
    {
        const Table<QString, QString> row{"played", "plan"};
        for (const QStringList &parts : kelo::test::arrowed(QFINDTESTDATA("plans.txt")))
            row(qPrintable(parts[0]), parts[1], parts[2]);
    }

    void plansADay()
    {
        QFETCH(QString, played);
        const PracticePlan plan = planFor(
            knownBars(playedFrom(played)), firstDay + std::chrono::days(9), {"A", "B", "C"});
        QStringList weakest;
        for (const Assignment &part : plan.weakest)
            weakest << textOf(part);
        QTEST(weakest.join(u"; "_s) + u" | "_s + (plan.untouched ? textOf(*plan.untouched) : u""_s)
                + u" | "_s + QString::fromStdString(plan.known) + u'.',
            "plan");
    }

    void sumsUpAWeek()
    {
        const auto played =
            playedFrom(u"D0 b1 w1, D0 b1, D8 b1, D8 b2 w2, D10 b1, D10 b2, D13 b3 w2"_s);
        const PracticeWeek week =
            weekUntil(firstDay + std::chrono::days(13), played, knownBars(played));
        QCOMPARE(week.days, 3);
        QCOMPARE(week.bars, 5);
        QCOMPARE(week.clean, 60);
        QCOMPARE(week.cleanBefore, 50);
        QCOMPARE(week.sure, 2);
        QCOMPARE(week.known, 3);
        QCOMPARE(weekUntil(firstDay + std::chrono::days(6), {}, {}).cleanBefore, -1);
    }

    void plansAnyPracticeAsEver()
    {
        QByteArray all;
        const auto add = [&](std::initializer_list<double> numbers) {
            for (const double each : numbers)
                all += QByteArray::number(each) + ' ';
        };
        for (unsigned seed = 0; seed < 100; ++seed) {
            Chance chance(seed);
            std::vector<PlayedBar> played;
            for (int day = 0, i = chance.below(40); i >= 0; --i, day += chance.oneIn(3))
                played.push_back({noonOf(day), chance.of(QList{"A", "B", "C", "Gone"}),
                    1 + chance.below(6), static_cast<Hands>(chance.below(3)),
                    chance.oneIn(2) ? 0 : chance.below(5), chance.of(QList{0, 50, 89, 90, 100})});
            const auto known = knownBars(played);
            for (const KnownBar &each : known) {
                all += each.piece.c_str();
                add({double(each.bar), double(each.hands), double(each.wrong), double(each.tempo),
                    double(each.grade), double(each.repetitions), each.ease,
                    double((each.due - firstDay).count()), double((each.last - firstDay).count())});
            }
            const auto today = firstDay + std::chrono::days(5 + chance.below(12));
            const PracticePlan plan = planFor(known, today, {"A", "B", "C"});
            for (const Assignment &part : plan.weakest)
                all += textOf(part).toUtf8();
            all += (plan.untouched ? textOf(*plan.untouched).toUtf8() : "") + plan.known.c_str();
            const PracticeWeek week = weekUntil(today, played, known);
            for (const int each :
                {week.days, week.bars, week.clean, week.cleanBefore, week.sure, week.known})
                add({double(each)});
        }
        QCOMPARE(unlikeKept(u"practice"_s, {qChecksum(all)}), QString());
    }

    void tellsBarsOfAPart()
    {
        const PlayedPart part{4, 6, Hands::Right, {{5, 2}, {0, 1}}, 80};
        QCOMPARE(barsOf(part, "A", noonOf(0)).size(), 3U);
        QCOMPARE(barsOf(part, "A", noonOf(0)).front().wrong, 1);
        PlayedPart broken = part;
        broken.whole = false;
        const auto bars = barsOf(broken, "A", noonOf(0));
        QCOMPARE(bars.size(), 2U);
        QCOMPARE(bars.back(), (PlayedBar{noonOf(0), "A", 5, Hands::Right, 2, 80}));
    }

    void outlivesTheProgram()
    {
        const QTemporaryDir folder;
        const auto file = std::filesystem::path(folder.path().toStdString()) / "new" / "p.db";
        const auto played =
            playedFrom(u"D0 b1 w1 t80, D0 b2 left Für, D400 b3, D2 b3 right t100 It's"_s);
        {
            PracticeLog log(file);
            log.add(played);
            PracticeLog beside(file); // another one may read and write meanwhile
            beside.add(std::span(played).first(1));
            QVERIFY(log.takeTrouble().empty() && beside.takeTrouble().empty());
            log.keepReading("A", 1);
            log.keepReading("A", 2);
            log.keepReading("Für", 1);
        }
        PracticeLog log(file);
        auto kept = log.bars();
        QCOMPARE(kept.size(), 5U);
        QCOMPARE(kept[0], played[0]);
        QCOMPARE(kept[1], played[1]);
        QCOMPARE(kept[3], played[3]); // by time
        QCOMPARE(kept[4], played[2]);
        QVERIFY(log.readingOf("A") == 2 && log.readingOf("Für") == 1 && !log.readingOf("B"));
        QCOMPARE(log.forget("A"), 3U);
        QVERIFY(!log.readingOf("A") && log.readingOf("Für"));
        QCOMPARE(log.forget("A"), 0U);
        kept = PracticeLog(file).bars();
        QCOMPARE(kept.size(), 2U);
        QCOMPARE(QString::fromStdString(tableOf(kept)),
            u"time,piece,bar,hand,wrong keys,tempo percent\r\n"
            "2025-03-01 12:34:56,\"Für\",2,left,0,\r\n"
            "2025-03-03 12:34:56,\"It's\",3,right,0,100\r\n"_s);
        QCOMPARE(tableOf(playedFrom(u"\"q\""_s)).find("\"\"\"q\"\"\"") != std::string::npos, true);
    }

    void goesOnWhateverTheFile_data()
    {
        const Table<QByteArray, bool> row{"file", "aside"};
        row("no database", QByteArray(5000, 'x'), true);
        row("cut off", "half", true);
        row("another program's", "other", false);
        row("not to be written", "readonly", false);
        row("held by somebody else", "held", false);
        row("held when a hand is chosen", "chosen", false);
    }

    void goesOnWhateverTheFile()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, aside);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"p.db"_s);
        const auto played = playedFrom(u"D0 b1 w1, D0 b2, D0 b3"_s);
        if (file.size() > 100) {
            kelo::test::writeFile(path, file);
        } else {
            PracticeLog whole(path.toStdString());
            std::vector<PlayedBar> many;
            for (int i = 0; i < 300; ++i)
                many.insert(many.end(), played.begin(), played.end());
            whole.add(many);
        }
        QByteArray bytes = kelo::test::readFile(path);
        if (file == "half")
            kelo::test::writeFile(path, bytes.left(bytes.size() / 2) + QByteArray(4096, 'x'));
        if (file == "other")
            kelo::test::writeFile(path, bytes.replace("at TEXT NOT NULL,", "it TEXT NOT NULL,"));
        if (file == "readonly")
            QDir(folder.path()).mkdir(u"p.db-journal"_s); // no journal can be written there
        PracticeLog log(path.toStdString());
        const bool held = file == "held" || file == "chosen";
        sqlite3 *other = nullptr;
        if (held && sqlite3_open(path.toUtf8().constData(), &other) == SQLITE_OK)
            sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        const auto closing = qScopeGuard([&] { sqlite3_close(other); });
        if (file != "chosen")
            log.add(played);
        log.keepReading("A", 2);
        if (file == "chosen")
            log.add(played);
        QCOMPARE(log.readingOf("A"), std::optional(2));
        QVERIFY(!log.takeTrouble().empty());
        QVERIFY2(log.takeTrouble().empty(), "it is said once");
        QCOMPARE(log.bars().size(), held ? 903U : 3U);
        QCOMPARE(log.bars().back(), played.back());
        QCOMPARE(QFileInfo::exists(path + u".damaged"_s), aside);
        sqlite3_close(std::exchange(other, nullptr));
        QDir(folder.path()).rmdir(u"p.db-journal"_s);
        QVERIFY(log.keep());
        QCOMPARE(log.takeTrouble().empty(), aside || file == "other");
        PracticeLog later(path.toStdString());
        QCOMPARE(later.bars().size(), file == "other" ? 0U : aside ? 3U : 903U);
        QCOMPARE(later.readingOf("A").has_value(), file != "other");
    }

    void namesTheFingersOfAScale_data()
    {
        const Table<int, bool, QString, QString> row{"tonic", "minor", "right", "left"};
        for (const QStringList &parts : kelo::test::arrowed(QFINDTESTDATA("fingers.txt")))
            row(qPrintable(parts[0]), parts[1].toInt(), parts[0].endsWith(u"minor"), parts[2],
                parts[3]);
    }

    void namesTheFingersOfAScale()
    {
        QFETCH(int, tonic);
        QFETCH(bool, minor);
        const auto fingers = [&](Hands hand) {
            QString all;
            for (const int finger : scaleFingers({tonic, minor}, hand))
                all += QString::number(finger);
            return all;
        };
        QTEST(fingers(Hands::Right), "right");
        QTEST(fingers(Hands::Left), "left");
    }

    /// The thumb is kept off black keys in all scales: no hand can turn over it there.
    void keepsTheThumbOffBlackKeys()
    {
        for (int tonic = 0; tonic < 12; ++tonic) {
            for (const bool minor : {false, true}) {
                const Piece scale = scaleOf({tonic, minor}, Hands::Both);
                QCOMPARE(scale.notes.size(), 30U);
                for (std::size_t i = 0; i < scale.notes.size(); ++i) {
                    const int note = scale.notes[i].pitch % 12;
                    const bool black =
                        note == 1 || note == 3 || note == 6 || note == 8 || note == 10;
                    QVERIFY2(!black || scale.marks[i].finger != 1,
                        qPrintable(u"tonic %1 note %2"_s.arg(tonic).arg(note)));
                }
            }
        }
    }

    void makesExercises()
    {
        const auto pitches = [](const Piece &piece) {
            QStringList all;
            for (const Note &note : piece.notes)
                all << QString::number(note.pitch);
            return all.join(u' ');
        };
        QCOMPARE(pitches(scaleOf({9, true}, Hands::Right)),
            u"57 59 60 62 64 65 68 69 68 65 64 62 60 59 57"_s);
        QCOMPARE(pitches(arpeggioOf({0, false}, Hands::Left)), u"48 52 55 60 55 52 48"_s);
        QCOMPARE(pitches(cadenceOf({0, false}, Hands::Both)),
            u"60 64 67 48 60 65 69 53 59 65 67 55 60 64 67 48"_s);
        QCOMPARE(
            pitches(cadenceOf({9, true}, Hands::Right)), u"57 60 64 57 62 65 56 62 64 57 60 64"_s);
        QCOMPARE(QString::fromStdString(fingersInWords(arpeggioOf({2, false}, Hands::Both))),
            u"Right hand: one, two, three, five. Left hand: five, three, two, one."_s);
        QCOMPARE(
            pitches(patternOf({0, false}, Hands::Right, 0)).left(23), u"60 64 65 67 69 67 65 64"_s);
        QCOMPARE(QString::fromStdString(fingersOfBar(patternOf({9, true}, Hands::Left, 2))),
            u"Left hand: five, four, one, two, three, four, three, two."_s);
        QCOMPARE(
            keyOfDay(firstDay + std::chrono::days(1)).tonic, (keyOfDay(firstDay).tonic + 7) % 12);
        QByteArray all;
        for (int tonic = 0; tonic < 12; ++tonic) {
            for (const bool minor : {false, true}) {
                for (const Hands hands : {Hands::Both, Hands::Right, Hands::Left}) {
                    const Tonality key{tonic, minor};
                    for (const Piece &each : {scaleOf(key, hands), arpeggioOf(key, hands),
                             cadenceOf(key, hands), patternOf(key, hands, 0),
                             patternOf(key, hands, 1), patternOf(key, hands, 2)})
                        all += everythingOf(each);
                }
            }
        }
        QCOMPARE(unlikeKept(u"exercises"_s, {qChecksum(all)}), QString());
        const Piece scale = scaleOf({0, false}, Hands::Both);
        QVERIFY(scale.bars.size() == 2 && scale.notes.back().duration > 0.7);
    }
};

QTEST_APPLESS_MAIN(PracticeTest)
#include "practice_test.moc"
