#include "lessons/attempt.h"
#include "lessons/lesson.h"
#include "lessons/touch.h"
#include "songs/library.h"
#include "songs/notation.h"
#include "sums.h"
#include "support/table.h"
#include "theory/pitch_names.h"

#include <QTest>

#include <functional>

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

} // namespace

class LessonsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void judgesAsATeacherWould_data()
    {
        // Steps are a quarter of half a second each: "60+67" a chord, "62~" a trill, "(61)60" with
        // a grace note. Keys are "60" at the next quarter, or "60@0.2" at that many quarters.
        const Table<QString, QString, QString> row{"steps", "keys", "verdict"};
        const QString four = u"60 64 60+67 62"_s;
        const QString good = u"Passed. And in good time."_s;
        const QString scale = u"60 62 64 65 67 69 71 72"_s;
        row("as written", four, u"60 64 60+67 62"_s, good);
        row("half as fast", four, u"60 64@2 60+67@4 62@6"_s, good);
        row("twice as fast", four, u"60 64@.5 60+67@1 62@1.5"_s, good);
        row("a chord from the top", four, u"60 64 67 60@2.02 62@3"_s, good);
        row("a chord rolled in 80 ms", four, u"60 64 60@2 67@2.16 62@3"_s, good);
        row("a slowly rolled chord", four, u"60 64 67@2 60@2.9 62@3"_s, good);
        row("hands not quite together", four, u"60 64 60@2 62@2.8 67@2.9"_s, good);
        row("hands far from together", four, u"60 64 60@2 62@2.5 67@2.9"_s,
            u"The third chord: you left out G."_s);
        row("a note held too long", four, u"60 64 60+67@4 62@5"_s,
            u"Passed. The third chord may come a little sooner."_s);
        row("a note too soon", four, u"60 64@.2 60+67@1.2 62@2.2"_s,
            u"Passed. The second note may wait a little longer."_s);
        row("a key that bounces", four, u"60 60@.1 64@1 60+67 62"_s, good);
        row("a key of a chord that bounces", four, u"60 64 60 60@2.1 67@2.12 62@3"_s, good);
        row("a wrong note", four, u"60 65"_s, u"The second note: E. You played the F above."_s);
        row("a note below", four, u"60 62"_s, u"The second note: E. You played the D below."_s);
        row("far off", four, u"60 83"_s, u"The second note: E. You played B, far above."_s);
        row("what follows is not held against anyone", four, u"60 65 60"_s,
            u"The second note: E. You played the F above."_s);
        row("put right at once", four, u"60 65 64@1.3 60+67@2 62@3"_s, good);
        row("put right in a chord", four, u"60 64 60 65 67@2.3 62@3"_s, good);
        row("an octave too low", u"60"_s, u"48"_s,
            u"The first note: C is right, but an octave higher."_s);
        row("two octaves too high", four, u"60 88"_s,
            u"The second note: E is right, but two octaves lower."_s);
        row("a wrong note in a chord", four, u"60 64 60 65@2"_s,
            u"The third chord: C and G together. You played the F below G."_s);
        row("half a chord", four, u"60 64 60 62@3"_s, u"The third chord: you left out G."_s);
        row("half a chord of three", u"60+64+67 62"_s, u"64 62@1"_s,
            u"The first chord: you left out C and G."_s);
        row("a note skipped", four, u"60 60@1"_s, u"The second note: E. You played the C below."_s);
        row("a key of a chord twice", four, u"60 64 60 60@2.5"_s,
            u"The third chord: C and G together. You played the C below G."_s);
        row("repeated notes", u"60 60 60 60"_s, u"60 60 60 60"_s, good);
        row("quick repeated notes", u"60 60 60 60"_s, u"60 60@.2 60@.4 60@.6"_s, good);
        row("one repetition too few", u"60 60 62"_s, u"60 62"_s,
            u"The second note: C. You played the D above."_s);
        row("one repetition too many", u"60 60 62 64"_s, u"60 60 60"_s,
            u"The third note: D. You played the C below."_s);
        row("a trill", u"62~ 60 59 60"_s, u"62 64@.2 62@.4 64@.6 62@.8 60@1 59 60"_s, good);
        row("a trill from above", u"62~ 60 59 60"_s, u"64 62@.2 64@.4 62@.6 60@1 59 60"_s, good);
        row("a trill that is left out", u"62~ 60 59 60"_s, u"62 60 59 60"_s, good);
        row("a wrong note after a trill", u"62~ 60 59"_s, u"62 64@.2 62@.4 67@1"_s,
            u"The second note: C. You played the G above."_s);
        row("a grace note", u"60 (63)64 65 67"_s, u"60 63@.9 64@1 65 67"_s, good);
        row("a grace note that is left out", u"60 (63)64 65 67"_s, u"60 64 65 67"_s, good);
        row("a grace note alone", u"60 (63)64 65 67"_s, u"60 63 65@2"_s,
            u"The second note: E. You played the F above."_s);
        row("the same key in both hands' notes", u"60+64 60 60+67 60"_s, u"60+64 60 60+67 60"_s,
            good);
        row("rushing", scale, u"60 62@1 64@2 65@3 67@3.7 69@4.4 71@5.1 72@5.8"_s,
            u"Passed. You got faster."_s);
        row("dragging", scale, u"60 62@1 64@2 65@3 67@4.4 69@5.8 71@7.2 72@8.6"_s,
            u"Passed. You got slower."_s);
        row("a little rubato", scale, u"60 62@1.1 64@2 65@3.1 67@4.2 69@5.1 71@6 72@7.3"_s, good);
        row("one note late, the rest in time", scale, u"60 62 64 65@3.7 67@4 69 71 72"_s,
            u"Passed. The fifth note may wait a little longer."_s);
        row("uneven", scale, u"60 62@1.5 64@2 65@3.5 67@4 69@5.5 71@6 72@7.5"_s,
            u"Passed. The rhythm was uneven."_s);
        row("three notes say nothing of time", u"60 62 64"_s, u"60 62@3 64@3.1"_s, u"Passed. "_s);
    }

    void judgesAsATeacherWould()
    {
        QFETCH(QString, steps);
        QFETCH(QString, keys);
        constexpr double quarter = 0.5;
        std::vector<Step> written;
        for (QString each : steps.split(u' ')) {
            Step step{static_cast<double>(written.size()) * quarter, {}};
            if (each.startsWith(u'(')) {
                step.ornaments.push_back(each.mid(1, 2).toInt());
                each.remove(0, 4);
            }
            for (const QString &pitch : each.split(u'+'))
                step.pitches.push_back(pitch.left(2).toInt());
            for (const int away : {-2, -1, 0, 1, 2}) {
                if (each.endsWith(u'~'))
                    step.ornaments.push_back(step.pitches.front() + away);
            }
            written.push_back(step);
        }
        Attempt attempt(written, Spelling::Sharps);
        double at = -1;
        for (const QString &each : keys.split(u' ')) {
            const QStringList parts = each.split(u'@');
            at = parts.size() > 1 ? parts[1].toDouble() : std::floor(at) + 1;
            for (const QString &pitch : parts[0].split(u'+'))
                attempt.press(pitch.toInt(), at * quarter);
        }
        attempt.expire(1e9);
        const bool passed = attempt.state() == Attempt::State::Passed;
        QVERIFY(passed || attempt.state() == Attempt::State::Missed);
        QVERIFY(passed ? attempt.fault().empty() : attempt.rhythm().empty());
        QTEST(passed ? u"Passed. "_s + QString::fromStdString(attempt.rhythm())
                     : QString::fromStdString(attempt.fault()),
            "verdict");
    }

    void hearsHowItIsTouched_data()
    {
        // A step is half a second, four a bar: a pitch as it is written, "." short, "_" with a rest
        // after it, "!100" that loud instead of 80, "+" with the left hand's. Then how strong it
        // came and, after "/", which part of the step it was held; 0.95 else.
        const Table<QString, QString, QString> row{"written", "played", "verdict"};
        const QString scale = u"60 62 64 65 67 69 71 72"_s;
        const QString loud = u"60 62 64 65 67!110 69!110 71!110 72!110"_s;
        const QString hands = u"72+48 74+50 76+52 77+53 79+55"_s;
        row("as written", scale, u"70 70 72 69 70 74 70 70"_s,
            u"The loudness was right. Nicely joined."_s);
        row("all soft", scale, u"30 30 32 29 30 34 30 30"_s,
            u"The loudness was right. Nicely joined."_s);
        row("a forte that is not there", loud, u"70 70 70 70 70 70 70 70"_s,
            u"Bar two is written louder. Nicely joined."_s);
        row("half of a forte", loud, u"70 70 70 70 85 85 85 85"_s,
            u"Bar two is written louder. Nicely joined."_s);
        row("most of a forte", loud, u"70 70 70 70 92 92 92 92"_s,
            u"The loudness was right. Nicely joined."_s);
        row("too loud in the second bar", scale, u"60 60 60 60 60 80 80 80"_s,
            u"Bar two is written softer. Nicely joined."_s);
        row("an accent", scale, u"60 60 60 90 60 60 60 60"_s,
            u"Bar one, beat four stood out. Nicely joined."_s);
        row("a key that hardly sounds", scale, u"60 60 30 60 60 60 60 60"_s,
            u"Bar one, beat three was hardly heard. Nicely joined."_s);
        row("a left hand that covers", hands, u"60+75 60+75 60+75 60+75 60+75"_s,
            u"Play the left hand softer: it covers the right one. Nicely joined."_s);
        row("a left hand a little louder", hands, u"60+70 60+70 60+70 60+70 60+70"_s,
            u"The loudness was right. Nicely joined."_s);
        row("a left hand that hides", hands, u"80+50 80+50 80+50 80+50 80+50"_s,
            u"The left hand may be a little louder. Nicely joined."_s);
        row("three notes say nothing of loudness", u"60 62 64"_s, u"20 90 20"_s,
            u"Nicely joined."_s);
        row("two hands, one of them apart", hands, u"60/.5+60 60/.5+60 60/.5+60 60/.5+60 60+60"_s,
            u"The loudness was right. Right hand: join the notes, hold each key until the next one "
            "sounds."_s);
        row("apart", scale, u"70/.6 70/.6 70/.6 70/.6 70/.6 70/.6 70/.6 70"_s,
            u"The loudness was right. Join the notes, hold each key until the next one sounds."_s);
        row("one gap", scale, u"70 70 70 70 70/.5 70 70 70"_s,
            u"The loudness was right. Bar two, beat one: hold it until the next one sounds."_s);
        row("blurred", scale, u"70/1.8 70/1.8 70/1.8 70/1.8 70/1.8 70/1.8 70 70"_s,
            u"The loudness was right. Let go a little sooner, the notes run into each other."_s);
        row("a slight overlap", scale, u"70/1.3 70/1.3 70/1.3 70/1.3 70/1.3 70/1.3 70 70"_s,
            u"The loudness was right. Nicely joined."_s);
        row("short notes", u"60. 62. 64. 65."_s, u"70/.5 70/.3 70/.6 70"_s,
            u"The loudness was right. Nicely short."_s);
        row("short notes held", u"60. 62. 64. 65."_s, u"70 70 70/.3 70"_s,
            u"The loudness was right. Play the short notes shorter."_s);
        row("one short note held", u"60. 62. 64. 65. 67. 65. 64. 62."_s,
            u"70/.4 70/.4 70 70/.4 70/.4 70/.4 70/.4 70"_s,
            u"The loudness was right. Bar one, beat three may be shorter."_s);
        row("repeated notes cannot be joined", u"60 60 60 60"_s, u"70/.5 70/.5 70/.5 70"_s,
            u"The loudness was right."_s);
        row("a rest is no gap", u"60 62_ 64 65"_s, u"70 70/.5 70 70"_s,
            u"The loudness was right. Nicely joined."_s);
    }

    void hearsHowItIsTouched()
    {
        QFETCH(QString, written);
        QFETCH(QString, played);
        constexpr double each = 0.5;
        std::vector<Step> steps;
        struct Event {
            double at;
            int pitch;
            int velocity;
        };
        std::vector<Event> events;
        const QStringList how = played.split(u' ');
        for (const QString &text : written.split(u' ')) {
            const int index = int(steps.size());
            Step step{index * each, {}};
            step.bar = 1 + index / 4;
            step.beat = 1 + index % 4;
            const QStringList keys = how[index].split(u'+');
            const QStringList notes = text.split(u'+');
            for (qsizetype i = notes.size() - 1; i >= 0; --i) { // the left hand's lies below
                const bool shortened = notes[i].contains(u'.') || notes[i].contains(u'_');
                const QStringList parts = notes[i].split(u'!');
                step.pitches.push_back(notes[i].left(2).toInt());
                step.hands.push_back(i == 0 ? Hands::Right : Hands::Left);
                step.tones.push_back({parts.size() > 1 ? parts[1].toInt() : 80,
                    step.at + each * (shortened ? 0.5 : 0.95)});
                const QStringList key = keys[i].split(u'/');
                const double held = key.size() > 1 ? key[1].toDouble() : 0.95;
                events.push_back({10 + step.at, step.pitches.back(), key[0].toInt()});
                events.push_back({10 + step.at + each * held, step.pitches.back(), 0});
            }
            steps.push_back(step);
        }
        std::ranges::stable_sort(events, {}, &Event::at);
        Touch touch(steps);
        for (const Event &event : events) {
            if (event.at <= 10 + steps.back().at + 0.01) // the last key ends the part
                touch.key(event.pitch, event.velocity, event.at);
        }
        const QString loudness = QString::fromStdString(touch.loudness().words);
        const QString legato = QString::fromStdString(touch.legato().words);
        QTEST((loudness + u' ' + legato).trimmed(), "verdict");
    }

    void judgesTheSameEachTime()
    {
        QByteArray all;
        for (unsigned seed = 0; seed < 400; ++seed) {
            Chance chance(seed);
            std::vector<Step> written;
            double at = 0;
            for (int i = 4 + chance.below(8); i > 0; --i) {
                Step step{at, {}};
                for (int pitch = 57 + chance.below(12); step.pitches.size() < 3U; pitch += 3) {
                    step.pitches.push_back(pitch);
                    if (seed % 2 == 0)
                        step.hands.push_back(chance.oneIn(2) ? Hands::Left : Hands::Right);
                    if (!chance.oneIn(3))
                        break;
                }
                if (chance.oneIn(8))
                    step.ornaments = {step.pitches[0] + 1, step.pitches[0] + 2};
                if (seed % 3 > 0) {
                    step.bar = 1 + int(at / 2);
                    step.beat = int(at * 2) % 4 + (seed % 3 == 1 ? 1 : 0);
                    step.beatAt = int(at * 2) / 2.0;
                }
                written.push_back(step);
                at += chance.of(QList{0.1, 0.25, 0.5, 0.5, 0.5, 1.0});
            }
            Attempt attempt(written, static_cast<Spelling>(seed % 3));
            const double pace = chance.of(QList{0.7, 1.0, 1.6});
            const double later = chance.of(QList{0.7, 1.0, 1.0, 1.0, 1.4});
            const auto tell = [&] {
                all += QByteArray::number(int(attempt.state())) + attempt.next().c_str() + '|'
                    + attempt.fault().c_str() + '|' + attempt.rhythm().c_str()
                    + QByteArray::number(attempt.deadline().value_or(-1), 'f', 3)
                    + (attempt.begun() ? "b" : "") + (attempt.atBeginning() ? "0" : "");
            };
            double now = 1;
            for (std::size_t i = 0; i < written.size(); ++i) {
                for (const int pitch : written[i].pitches) {
                    const bool slip = chance.oneIn(14);
                    attempt.press(slip ? pitch + chance.of(QList{-12, -1, 2, 12, 24, 17}) : pitch,
                        now + 0.03 * chance.below(7));
                    if (chance.oneIn(20))
                        attempt.press(pitch, now + 0.03 * chance.below(7));
                }
                if (chance.oneIn(10) && i + 1 < written.size())
                    attempt.press(written[i + 1].pitches[0], now);
                tell();
                attempt.expire(now += 0.02);
                if (attempt.state() == Attempt::State::Missed && chance.oneIn(3)) {
                    tell();
                    attempt.resume();
                    i = chance.oneIn(2) ? i : 0;
                }
                const double gap = i + 1 < written.size() ? written[i + 1].at - written[i].at : 1;
                now += gap * pace * (i * 2 > written.size() ? later : 1)
                    * (chance.oneIn(8) ? chance.of(QList{0.4, 1.9}) : 1);
            }
            tell();
            attempt.expire(1e9);
            tell();
        }
        QCOMPARE(unlikeKept(u"attempts"_s, {qChecksum(all)}), QString());
    }

    void leadsTheSameWayEachTime()
    {
        const Library library{{}};
        QByteArray all;
        for (unsigned seed = 0; seed < 24; ++seed) {
            Chance chance(seed);
            const auto hands = static_cast<Hands>(seed % 3);
            Lesson lesson(std::get<Piece>(library.load(seed % library.size())), "It", hands);
            const auto tell = [&](const Reply &reply) {
                all += text(reply).toUtf8() + (reply.over ? "|over " : "|")
                    + QByteArray::number(lesson.deadline().value_or(-1)) + ' ';
            };
            double now = 10;
            tell(lesson.begin(1 + chance.below(9)));
            for (int i = 0; i < 120; ++i) {
                now += 0.2 * chance.below(8);
                const auto play = [&] {
                    lesson.listen(now);
                    for (const Note &note : lesson.demo().notes) {
                        const bool slip = chance.oneIn(20);
                        tell(lesson.press(note.pitch + (slip ? chance.of(QList{-2, 1, 12}) : 0),
                            now + note.at * (chance.oneIn(6) ? 1.1 : 1)));
                        if (slip && chance.oneIn(2))
                            break;
                    }
                    now += lesson.demo().length;
                    all += everythingOf(lesson.demo()) + (lesson.entersWith(67) ? "G" : "");
                };
                const auto wait = [&] {
                    for (double due = now + 30; lesson.deadline() && *lesson.deadline() < due;) {
                        now = *lesson.deadline();
                        tell(lesson.advance(now));
                    }
                };
                chance.of(QList<std::function<void()>>{[&] { tell(lesson.skip()); },
                    [&] { tell(lesson.back()); }, [&] { tell(lesson.repeat()); },
                    [&] { tell(lesson.toBar(chance.below(40))); },
                    [&] { tell(lesson.setHands(static_cast<Hands>(chance.below(3)))); },
                    [&] { all += lesson.notes() + lesson.whereWeAre(); }, wait, wait, play, play,
                    play, play})();
            }
        }
        QCOMPARE(unlikeKept(u"lessons"_s, {qChecksum(all)}), QString());
    }

    void goesOnFromTheBeatBefore()
    {
        const Piece piece = sheet("c4/8 d4 e4 f4 g4 a4 b4 c5 | c5/1", "r/1 | c3/1");
        const auto right = excerptsOf(piece, Hands::Right);
        Attempt attempt(right[0].steps, Spelling::Sharps);
        for (const int key : {60, 62, 64, 65, 67, 70})
            attempt.press(key, key);
        QCOMPARE(QString::fromStdString(attempt.fault()),
            u"Bar one, beat three: A. You played the A sharp above."_s);
        Attempt again = attempt;
        attempt.resume();
        QCOMPARE(attempt.next(), std::string("E"));
        for (const int key : {64, 65, 67, 69, 71, 72})
            attempt.press(key, key);
        QVERIFY(attempt.state() == Attempt::State::Passed || attempt.next() == "C");
        again.resume(); // who would rather begin again may
        for (const int key : {60, 62})
            again.press(key, key);
        QCOMPARE(again.next(), std::string("E"));
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
        QCOMPARE(found.join(u", "_s),
            u"1-3 right 5, 1-3 left 2, 1-3 both 6, 4-5 right 9, 4-5 left 5, 4-5 both 9, "
            "1-5 both 15"_s);
        const auto left = excerptsOf(piece, Hands::Left);
        QCOMPARE(left.size(), 3U);
        QVERIFY(left[2].joined && left[2].lastBar == 5 && left[2].firstBar == 1);
        const Piece demo = pieceOf(left[1], piece);
        QCOMPARE(demo.notes.size(), 5U);
        QCOMPARE(demo.notes.front().at, 0.0);
        QVERIFY(demo.notes.front().track == 1 && demo.length <= 4.0);
        Piece brief; // over at once, without bars
        brief.notes = {{0, 0, 60, 80}};
        QCOMPARE(excerptsOf(brief, Hands::Both).size(), 1U);
        Piece staccato = piece; // its last note is over at once, and belongs to its part
        staccato.notes.back().duration = 0.02F;
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
        QCOMPARE(QString::fromStdString(lesson.notes()),
            u"Bar one, C major, no sharps or flats, four four time. C four, half; E; G, whole note."_s);
        QVERIFY(text(lesson.press(60, 0)).isEmpty()); // nobody waits for it yet
        QVERIFY(!lesson.deadline());
        lesson.listen(10);
        QVERIFY(text(lesson.press(60, 11)).isEmpty());
        QVERIFY(text(lesson.press(64, 12)).isEmpty());
        QCOMPARE(
            text(lesson.press(67, 13)), u"(good) Good. That was the whole of Test. Well done."_s);

        Lesson both(sheet("c4/1 | d4/2 r | e4/1", "c3/1 | g2 | c3"), "Test", Hands::Both);
        static_cast<void>(both.begin());
        QCOMPARE(
            text(both.back()), u"This is the first part. Bars one and two, right hand. (demo)"_s);
        QCOMPARE(text(both.skip()), u"Bars one and two, left hand. (demo)"_s);
        QCOMPARE(text(both.skip()), u"Bars one and two, both hands. (demo)"_s);
        QVERIFY(
            QString::fromStdString(both.notes())
                .endsWith(
                    u"Right hand: C four, whole note; D, half. Left hand: C three, whole note; G two."_s));
        both.listen(0);
        static_cast<void>(both.press(60, 1));
        static_cast<void>(both.press(48, 1.3));
        static_cast<void>(both.press(43, 2));
        QCOMPARE(text(both.press(62, 2)), u"(good) Good. Bar three, right hand. (demo)"_s);
        QCOMPARE(text(both.back()), u"Bars one and two, both hands. (demo)"_s);
        for (int i = 0; i < 3; ++i)
            static_cast<void>(both.skip());
        QCOMPARE(text(both.skip()), u"Bars one to three, both hands. (demo)"_s);
        QCOMPARE(both.bar(), 3); // where it goes on another day
        QCOMPARE(text(both.skip()), u"This is the last part."_s);
        QCOMPARE(text(both.repeat()), u"Bars one to three, both hands. (demo)"_s);
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
            const QString fault = miss == 1 ? u"Bar one, beat three: E. You played the F above."_s
                                            : u"Bar one, beat one: C. You played the F above."_s;
            QCOMPARE(text(lesson.advance(now + 1.4)),
                fault + (miss == 3 ? u" Listen again. (demo)"_s : u" Try again."_s));
            if (miss == 3)
                lesson.listen(now + 5);
        }
    }

    void saysAsMuchAsIsWanted()
    {
        const auto begun = [](Talk talk) {
            Lesson lesson(sheet("c4/1 | d4/2 r | e4/1", "c3/1 | g2 | c3"), "Test", Hands::Both);
            lesson.setTalk(talk);
            static_cast<void>(lesson.begin());
            lesson.listen(0);
            static_cast<void>(lesson.press(60, 1));
            return lesson;
        };
        Lesson changes = begun(Talk::Changes);
        static_cast<void>(changes.press(64, 2));
        QCOMPARE(text(changes.advance(4)), u"Bar two, beat one: D. You played the E above."_s);
        static_cast<void>(changes.press(60, 5));
        QCOMPARE(text(changes.press(62, 6)), u"(good) Left hand. (demo)"_s);
        QCOMPARE(text(changes.repeat()), u"(demo)"_s);
        static_cast<void>(changes.skip());
        QCOMPARE(text(changes.skip()), u"Bar three, right hand. (demo)"_s);
        changes.listen(10);
        QCOMPARE(text(changes.advance(40)), QString());
        Lesson sounds = begun(Talk::Sounds);
        static_cast<void>(sounds.press(64, 2));
        QCOMPARE(text(sounds.advance(4)), QString());
        static_cast<void>(sounds.press(60, 5));
        QCOMPARE(text(sounds.press(62, 6)), u"(good)  (demo)"_s);
        QCOMPARE(QString::fromStdString(sounds.whereWeAre()), u"Bars one and two, left hand."_s);
    }

    void tellsWhatWasPlayed()
    {
        Lesson lesson(sheet("c4/1 | d4/2 r | e4/1", "c3/1 | g2 | c3"), "Test", Hands::Both);
        static_cast<void>(lesson.begin());
        QVERIFY(!lesson.takePlayed());
        lesson.listen(0);
        for (const int key : {60, 65, 62}) // put right at once
            static_cast<void>(lesson.press(key, key / 2.0));
        const auto passed = lesson.takePlayed();
        QVERIFY(passed && passed->whole && passed->hands == Hands::Right);
        QCOMPARE(passed->wrong.at(2), 1);
        QCOMPARE(passed->tempo, 200);
        QVERIFY(!lesson.takePlayed());
        lesson.listen(100);
        static_cast<void>(lesson.press(50, 101));
        static_cast<void>(lesson.skip());
        const auto left = lesson.takePlayed();
        QVERIFY(left && !left->whole && left->hands == Hands::Left && left->wrong.at(1) == 1);
    }

    void changesHands()
    {
        Lesson lesson(
            sheet("c4/1 | d4/2 r | e4/1 | f4", "c3/1 | c3 | c3 | c3"), "Test", Hands::Both);
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
            for (; !reply.over && phrases < 300; ++phrases) {
                lesson.listen(now);
                reply = {};
                // A player who plays exactly what was shown.
                for (const Note &note : lesson.demo().notes) {
                    reply = lesson.press(note.pitch, now + note.at);
                    QVERIFY2(!reply.good || *reply.good, reply.words.c_str());
                }
                now += 1000;
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
