#include "following/accompaniment_part.h"
#include "following/score_follower.h"
#include "sums.h"
#include "support/table.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

/// Six bars of four steps, half a second each, no two bars alike.
std::vector<FollowedStep> piece()
{
    std::vector<FollowedStep> steps;
    for (const int pitch : {60, 64, 67, 72, 71, 67, 62, 59, 57, 60, 64, 69, 65, 62, 60, 57, 55, 59,
             62, 65, 64, 67, 72, 76})
        steps.push_back({static_cast<double>(steps.size()) * 0.5, {pitch}, steps.size() % 4 == 0});
    return steps;
}

} // namespace

class FollowingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsThePlayer_data()
    {
        // Keys are places in the piece, half a second apart at this pace; "x" is a wrong key, "+"
        // one too many, "-" a pause as long as a step.
        const Table<QString, double, int> row{"keys", "pace", "place"};
        row("as written", u"0 1 2 3 4 5 6"_s, 1, 6);
        row("half as fast", u"0 1 2 3 4 5 6"_s, 2, 6);
        row("with a wrong key", u"0 1 x 3 4"_s, 1, 4);
        row("a wrong key itself", u"0 1 2 3 x"_s, 1, 4);
        row("with a key too many", u"0 1 2 + 3 4"_s, 1, 4);
        row("with a key left out", u"0 1 2 - 4 5"_s, 1, 5);
        row("after a long rest", u"0 1 2 3 - - - - - - 4"_s, 1, 4);
        row("skips a bar", u"0 1 2 3 8 9"_s, 1, 9);
        row("skips three bars", u"0 1 2 3 16 17"_s, 1, 17);
        row("repeats a bar", u"0 1 2 3 4 5 6 7 4 5"_s, 1, 5);
        row("goes back to the beginning", u"0 1 2 3 4 5 6 0 1"_s, 1, 1);
        row("jumps with a wrong key", u"0 1 2 3 x 17 18"_s, 1, 18);
        row("breaks off and begins the bar again", u"0 1 2 3 4 5 4 5 6"_s, 1, 6);
    }

    void findsThePlayer()
    {
        QFETCH(QString, keys);
        QFETCH(double, pace);
        const auto steps = piece();
        ScoreFollower follower(steps);
        double now = 3;
        for (const QString &key : keys.split(u' ')) {
            if (key == u"+")
                follower.press(90, now - 0.35 * pace);
            else if (key == u"x")
                follower.press(91, now);
            else if (key != u"-")
                follower.press(steps[static_cast<std::size_t>(key.toInt())].pitches[0], now);
            now += key == u"+" ? 0 : 0.5 * pace;
        }
        QTEST(static_cast<int>(follower.step()), "place");
        if (pace > 1)
            QVERIFY(follower.pace() > 1.5);
    }

    void followsTheSameEachTime()
    {
        QByteArray all;
        for (unsigned seed = 0; seed < 60; ++seed) {
            Chance chance(seed);
            std::vector<FollowedStep> steps = piece();
            std::vector<Note> notes;
            for (std::size_t i = 0; i < steps.size(); i += 1 + seed % 2) {
                for (int more = chance.below(3); more > 0; --more)
                    steps[i].pitches.push_back(steps[i].pitches[0] + 3 * more);
                notes.push_back(
                    {steps[i].at + 0.01 * chance.below(30), 0.2, 40 + int(i), 60, 1, 1});
            }
            ScoreFollower follower(steps, seed % 3 == 0 ? 1.5 : 1);
            AccompanimentPart part(notes);
            const auto tell = [&](double value) { all += QByteArray::number(value, 'f', 3) + ' '; };
            double now = 5;
            std::size_t place = 0;
            for (int key = 0; key < 50; ++key) {
                now += 0.05 * (1 + chance.below(chance.oneIn(8) ? 60 : 15));
                place = chance.oneIn(12) ? std::size_t(chance.below(24)) : (place + 1) % 24;
                const int wrong = chance.oneIn(7) ? chance.of(QList{1, 2, 3, 12, 30}) : 0;
                const auto match = follower.press(chance.of(steps[place].pitches) + wrong, now);
                part.reach(follower, match);
                for (const Note &note : part.take(follower, now + 0.1))
                    tell(note.pitch);
                tell(part.deadline(follower).value_or(-1));
                tell(double(match.step) + (match.right ? 100 : 0) + (match.jumped ? 200 : 0));
                tell(follower.pace());
                if (key == 40 && seed % 4 == 0) {
                    follower.restart();
                    part.restart();
                }
            }
        }
        QCOMPARE(unlikeKept(u"following"_s, {qChecksum(all)}), QString());
    }

    void waitsForThePlayer()
    {
        std::vector<Note> notes;
        for (int i = 0; i < 24; ++i)
            notes.push_back({i * 0.25, 0.2, 40 + i, 60, 1, 1});
        ScoreFollower follower(piece());
        AccompanimentPart part(notes);
        QVERIFY(!part.deadline(follower)); // nobody has begun
        const auto pitches = [&](double now) {
            QString all;
            for (const Note &note : part.take(follower, now))
                all += QString::number(note.pitch - 40) + u' ';
            return all;
        };
        part.reach(follower, follower.press(60, 10));
        QCOMPARE(pitches(10), u"0 "_s); // with the player's key
        const double due = *part.deadline(follower); // rather a little early than late
        QVERIFY(due > 10.235 && due < 10.249);
        QCOMPARE(pitches(10.2), QString());
        QCOMPARE(pitches(10.26), u"1 "_s);
        QVERIFY(!part.deadline(follower)); // what follows belongs to the next key
        QCOMPARE(pitches(99), QString());
        part.reach(follower, follower.press(64, 10.9)); // late
        QCOMPARE(pitches(10.9), u"2 "_s);
        QVERIFY(*part.deadline(follower) > 11.15); // the pace has become slower
        part.reach(follower, follower.press(67, 11.1)); // early: what was left out stays so
        QCOMPARE(pitches(11.1), u"4 "_s);
        part.reach(follower, follower.press(72, 11.6));
        for (const int key : {55, 59})
            part.reach(follower, follower.press(key, key == 55 ? 12.1 : 12.6));
        QCOMPARE(follower.step(), 17U);
        QVERIFY(part.take(follower, 12.6).empty()); // there are no notes where the player is now
    }
};

QTEST_APPLESS_MAIN(FollowingTest)
#include "following_test.moc"
