#include "lessons/attempt.h"
#include "lessons/lesson.h"
#include "songs/library.h"
#include "songs/notation.h"
#include "support/table.h"
#include "theory/pitch_names.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

Piece sheet(const char *right, const char *left)
{
    return readSheet(
        {.title = "T", .composer = "C", .tempo = 120, .right = {right}, .left = {left}})
        .value();
}

QString text(const Reply &reply)
{
    QString all = QString::fromStdString(reply.words);
    if (reply.good)
        all.prepend(*reply.good ? u"(good) "_s : u"(wrong) "_s);
    return (reply.demo ? all + u" (demo)"_s : all).trimmed();
}

/// Key presses: MIDI pitch and when, in seconds.
using Presses = QList<std::pair<int, double>>;

} // namespace

Q_DECLARE_METATYPE(Presses)

class LessonsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void judges_data()
    {
        // C, then E, then C and G together, then D, a quarter each.
        const Table<Presses, QString> row{"presses", "verdict"};
        row("as written", {{60, 0}, {64, 0.5}, {60, 1.0}, {67, 1.0}, {62, 1.5}},
            u"Passed. And in good time."_s);
        row("half as fast", {{60, 0}, {64, 1}, {67, 2}, {60, 2.01}, {62, 3}},
            u"Passed. And in good time."_s);
        row("a slowly rolled chord", {{60, 0}, {64, 0.5}, {67, 1.0}, {60, 1.45}, {62, 1.5}},
            u"Passed. And in good time."_s);
        row("hands not quite together", {{60, 0}, {64, 0.5}, {60, 1.0}, {62, 1.4}, {67, 1.45}},
            u"Passed. And in good time."_s);
        row("a note held too long", {{60, 0}, {64, 0.5}, {60, 2}, {67, 2}, {62, 2.5}},
            u"Passed. The third note may come a little sooner."_s);
        row("a note too soon", {{60, 0}, {64, 0.1}, {60, 0.6}, {67, 0.6}, {62, 1.1}},
            u"Passed. The second note may wait a little longer."_s);
        row("a wrong note", {{60, 0}, {65, 0.5}}, u"The second note was E, you played F."_s);
        row("what follows a wrong note is not held against anyone", {{60, 0}, {65, 0.5}, {60, 1}},
            u"The second note was E, you played F."_s);
        row("the right note elsewhere", {{48, 0}},
            u"The first note: C is right, but an octave higher."_s);
        row("two octaves up", {{60, 0}, {88, 0}},
            u"The second note: E is right, but two octaves lower."_s);
        row("a wrong note in a chord", {{60, 0}, {64, 0.5}, {60, 1.0}, {65, 1.0}},
            u"The third chord was C and G together, you played F."_s);
        row("half a chord", {{60, 0}, {64, 0.5}, {60, 1.0}, {62, 1.5}},
            u"You left out G in the third chord."_s);
        row("a note skipped", {{60, 0}, {60, 0.5}}, u"The second note was E, you played C."_s);
        row("the same note of a chord twice", {{60, 0}, {64, 0.5}, {60, 1.0}, {60, 1.1}},
            u"The third chord was C and G together, you played C."_s);
    }

    void judges()
    {
        QFETCH(Presses, presses);
        Attempt attempt({{0, {60}}, {0.5, {64}}, {1.0, {60, 67}}, {1.5, {62}}}, Spelling::Sharps);
        for (const auto &[pitch, at] : presses)
            attempt.press(pitch, at);
        attempt.expire(1e9);
        const bool passed = attempt.state() == Attempt::State::Passed;
        QVERIFY(passed || attempt.state() == Attempt::State::Missed);
        QVERIFY(passed ? attempt.fault().empty() : attempt.rhythm().empty());
        QTEST(passed ? u"Passed. "_s + QString::fromStdString(attempt.rhythm())
                     : QString::fromStdString(attempt.fault()),
            "verdict");
    }

    void cutsAPieceIntoPhrases()
    {
        const Piece piece = sheet("c4/4 d4 e4 f4 | g4/1 | r | c4/8 c4 c4 c4 c4 c4 c4 c4 | c4/1",
            "r/1 | c3 | c3 | c3/4 c3 c3 c3 | c3/1");
        QStringList found;
        for (const Excerpt &excerpt : excerptsOf(piece, Hands::Both)) {
            found << u"%1-%2 %3 %4"_s.arg(excerpt.firstBar)
                         .arg(excerpt.lastBar)
                         .arg(QLatin1StringView(nameOf(excerpt.hands).data()))
                         .arg(excerpt.steps.size());
        }
        QCOMPARE(found,
            QStringList({u"1-2 right 5"_s, u"1-2 left 1"_s, u"1-2 both 5"_s, u"3-3 left 1"_s,
                u"4-4 right 8"_s, u"4-4 left 4"_s, u"4-4 both 8"_s, u"5-5 right 1"_s,
                u"5-5 left 1"_s, u"5-5 both 1"_s}));
        const auto left = excerptsOf(piece, Hands::Left);
        QCOMPARE(left.size(), 3U);
        const Piece demo = pieceOf(left[1], piece);
        QCOMPARE(demo.notes.size(), 5U);
        QCOMPARE(demo.notes.front().at, 0.0);
        QVERIFY(demo.notes.front().track == 1 && demo.length <= 4.0);
        Piece staccato = piece; // its last note is over at once, and belongs to its part
        staccato.notes.back().duration = 0.02;
        staccato.length = staccato.notes.back().at + 0.02;
        const auto ends = excerptsOf(staccato, Hands::Both);
        QVERIFY(!pieceOf(ends.back(), staccato).notes.empty());
        Piece metreless = piece;
        metreless.bars.clear();
        QVERIFY(!excerptsOf(metreless, Hands::Right).empty());
        QVERIFY(excerptsOf(Piece{}, Hands::Both).empty());
    }

    void leadsThroughAPiece()
    {
        Lesson lesson(sheet("c4/2 e4 | g4/1", "c3/1 | g2"), "Test", Hands::Right);
        QCOMPARE(text(lesson.begin()),
            u"A lesson on Test. Listen, then play it back. Bars one and two, right hand. (demo)"_s);
        QCOMPARE(lesson.demo().notes.size(), 3U);
        QCOMPARE(QString::fromStdString(lesson.notes()), u"Right hand: C, E, G."_s);
        QVERIFY(text(lesson.press(60, 0)).isEmpty()); // nobody waits for it yet
        QVERIFY(!lesson.deadline());
        lesson.listen(10);
        QVERIFY(text(lesson.press(60, 11)).isEmpty());
        QVERIFY(text(lesson.press(64, 12)).isEmpty());
        QCOMPARE(
            text(lesson.press(67, 13)), u"(good) Good. That was the whole of Test. Well done."_s);

        Lesson both(sheet("c4/1 | d4 | e4", "c3/1 | g2 | c3"), "Test", Hands::Both);
        static_cast<void>(both.begin());
        QCOMPARE(
            text(both.back()), u"This is the first part. Bars one and two, right hand. (demo)"_s);
        QCOMPARE(text(both.skip()), u"Bars one and two, left hand. (demo)"_s);
        QCOMPARE(text(both.skip()), u"Bars one and two, both hands. (demo)"_s);
        QCOMPARE(QString::fromStdString(both.notes()), u"Right hand: C, D. Left hand: C, G."_s);
        both.listen(0);
        static_cast<void>(both.press(60, 1));
        static_cast<void>(both.press(48, 1.3));
        static_cast<void>(both.press(43, 2));
        QCOMPARE(text(both.press(62, 2)), u"(good) Good. Bar three, right hand. (demo)"_s);
        QCOMPARE(text(both.back()), u"Bars one and two, both hands. (demo)"_s);
        for (int i = 0; i < 3; ++i)
            static_cast<void>(both.skip());
        QCOMPARE(text(both.skip()), u"This is the last part."_s);
        QCOMPARE(text(both.repeat()), u"Bar three, both hands. (demo)"_s);
    }

    void waitsUntilThePlayerIsQuiet()
    {
        Lesson lesson(sheet("c4/2 e4 | g4/1", "r/1 | r"), "Test", Hands::Right);
        static_cast<void>(lesson.begin());
        lesson.listen(0);
        QCOMPARE(*lesson.deadline(), 15.0);
        QCOMPARE(text(lesson.advance(15)), u"It is your turn."_s);
        QVERIFY(!lesson.deadline()); // once is enough
        static_cast<void>(lesson.press(60, 20));
        QCOMPARE(text(lesson.advance(25)), u"Next comes E."_s);
        QVERIFY(!lesson.deadline());
        double now = 30;
        for (int miss = 1; miss <= 4; ++miss, now += 10) {
            QCOMPARE(text(lesson.press(65, now)), u"(wrong)"_s); // at once, and silently
            QVERIFY(text(lesson.press(67, now + 0.5)).isEmpty());
            QVERIFY(text(lesson.advance(now + 1.2)).isEmpty());
            const QString fault = miss == 1 ? u"The second note was E, you played F."_s
                                            : u"The first note was C, you played F."_s;
            QCOMPARE(text(lesson.advance(now + 1.4)),
                fault + (miss == 3 ? u" Listen again. (demo)"_s : u" Try again."_s));
            if (miss == 3)
                lesson.listen(now + 5);
        }
    }

    void changesHands()
    {
        Lesson lesson(sheet("c4/1 | d4 | e4 | f4", "c3/1 | c3 | c3 | c3"), "Test", Hands::Both);
        for (int i = 0; i < 3; ++i)
            static_cast<void>(lesson.skip());
        QCOMPARE(text(lesson.setHands(Hands::Left)), u"Bars three and four, left hand. (demo)"_s);
        Lesson rightOnly(sheet("c4/1 | d4", "r/1 | r"), "Test", Hands::Both);
        QCOMPARE(text(rightOnly.setHands(Hands::Left)),
            u"There is nothing for the left hand in this piece."_s);
        QVERIFY(rightOnly.hands() == Hands::Both);
    }

    void everyShippedSongCanBeLearnt()
    {
        const Library library{{}};
        for (std::size_t song = 0; song < library.size(); ++song) {
            Lesson lesson(
                std::get<Piece>(library.load(song)), library.names()[song].title, Hands::Both);
            Reply reply = lesson.begin();
            double now = 0;
            int phrases = 0;
            for (; reply.demo && phrases < 300; ++phrases) {
                lesson.listen(now);
                reply = {};
                // A player who plays exactly what was shown.
                for (const Note &note : lesson.demo().notes) {
                    reply = lesson.press(note.pitch, now + note.at);
                    QVERIFY2(!reply.good || *reply.good, reply.words.c_str());
                }
                now += 100;
            }
            QVERIFY2(reply.over, library.names()[song].title.c_str());
            QVERIFY(phrases >= 4);
        }
    }

    void namesKeysAsTheyAreWritten()
    {
        QCOMPARE(pitchName(66, Spelling::Sharps), std::string("F sharp"));
        QCOMPARE(pitchName(66, Spelling::Flats), std::string("G flat"));
        QCOMPARE(pitchName(70, Spelling::Mixed), std::string("B flat"));
        QCOMPARE(pitchName(0, Spelling::Mixed), std::string("C"));
        const std::vector<int> chord{60, 64, 67};
        QCOMPARE(pitchNames(chord, Spelling::Mixed), std::string("C, E and G"));
    }
};

QTEST_APPLESS_MAIN(LessonsTest)
#include "lessons_test.moc"
