#include "link/speech.h"
#include "support/table.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

class CaptionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cutsWhereAReaderBreathes_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QStringList>("lines");
        const auto row = [](const char *why, const QStringList &lines) {
            QTest::newRow(why) << lines.join(u' ') << lines;
        };
        const QString word = u"abcdefghi "_s; // 10 units
        row("empty", {u""_s});
        row("a short sentence stays joined", {u"Hi. Let us begin now."_s});
        row("14 units make a sentence", {u"Ready, steady!"_s, u"Then we play it."_s});
        row("13 do not", {u"Ready steady! Then we play it."_s});
        row("a short tail joins the line before", {u"Let us begin now. Good luck."_s});
        row("12 units stand alone", {u"Let us begin now."_s, u"Good luck you"_s});
        row("a decimal point ends nothing", {u"The tempo is now 3.14159 beats a second."_s});
        row("marks in a row end at the last", {u"Are you really sure?!"_s, u"I am quite sure."_s});
        row("a comma waits for 44 units",
            {u"One, two, three, four, five, six, seven, 890,"_s, u"and then the rest of it"_s});
        row("a comma at 43 cuts nothing",
            {u"One, two, three, four, five, six, seven, 9,"_s + u" and then the rest of it"_s});
        row("74 units break at the last space",
            {word.repeated(7).trimmed(), u"abcdefghi abcdefghi"_s});
        row("a long word is never broken", {QString(200, u'x')});
        row("after a long word the next space ends the line",
            {QString(80, u'x'), u"and some more words"_s});
        QTest::newRow("two spaces after a sentence leave one")
            << u"Let us begin now.  Then we play on."_s
            << QStringList{u"Let us begin now."_s, u" Then we play on."_s};
    }

    void cutsWhereAReaderBreathes()
    {
        QFETCH(QString, caption);
        QStringList lines;
        for (const Segment &segment : cut(caption))
            lines << caption.sliced(segment.start, segment.length);
        QTEST(lines, "lines");
    }

    void findsTheSegment()
    {
        const std::vector<Segment> segments{{2, 8}, {11, 5}, {17, 9}};
        const QList<QPair<double, qsizetype>> places{
            {-1e300, 0}, {-0.5, 0}, {2, 0}, {10.99, 0}, {11, 1}, {16.9, 1}, {17, 2}, {1e300, 2}};
        for (const auto &[position, index] : places)
            QCOMPARE(segmentIndex(segments, position), index);
        QCOMPARE(segmentIndex({}, 5), 0);
        QCOMPARE(segmentIndex(segments, std::numeric_limits<double>::quiet_NaN()), 0);
    }

    void speechRunsThroughTheWord_data()
    {
        const Table<Speech, double, qint64, double> row{"speech", "now", "index", "exact"};
        const auto at = [](qsizetype length, bool speaking, bool gotWord, double wordTime = 0.5,
                            qint64 wordLen = 6) {
            Speech speech;
            speech.caption = QString(length, u'x');
            speech.speaking = speaking;
            speech.spokenTo = 10;
            speech.gotWord = gotWord;
            speech.wordAt = 100;
            speech.wordTime = wordTime;
            speech.wordFrom = 4;
            speech.wordLen = wordLen;
            return speech;
        };
        const Speech word = at(20, true, true);
        row("silent: spoken to there, shown whole", at(20, false, true), 100, 10, 20);
        row("no word yet", at(20, true, false), 100, 0, 0);
        row("before the word", word, 99, 4, 4);
        row("in the word", word, 100.25, 7, 7);
        row("in a unit of it", word, 100.125, 5, 5.5);
        row("late by half of the run-on", word, 100.65, 10, 10.5);
        row("never beyond the caption", at(10, true, true), 200, 10, 10);
        row("unknown duration, 0.06 s a unit", at(20, true, true, 0), 100.18, 7, 7);
        row("negative duration is unknown", at(20, true, true, -3), 100.18, 7, 7);
        row("a short word lasts 0.12 s", at(20, true, true, 0, 1), 100.06, 4, 4.5);
    }

    void speechRunsThroughTheWord()
    {
        QFETCH(Speech, speech);
        QFETCH(double, now);
        QFETCH(double, exact);
        QTEST(speech.spokenIndex(now), "index");
        QVERIFY(std::abs(speech.spokenExact(now) - exact) < 1e-9);
    }

    void theCursorGlidesAndJumpsBack()
    {
        const double longest = 0.7981034820053446;
        QCOMPARE(glide(0, 100, 60), 100 * longest); // as far as in a tenth of a second
        QCOMPARE(glide(0, 100, 0.05), 100 * (1 - std::exp(-0.8)));
        QCOMPARE(glide(10, 100, -1), 10);
        QCOMPARE(glide(10, 7, 0.1), 10 - 3 * longest);
        QCOMPARE(glide(10, 6.9, 0), 6.9);
    }
};

QTEST_GUILESS_MAIN(CaptionTest)
#include "caption_test.moc"
