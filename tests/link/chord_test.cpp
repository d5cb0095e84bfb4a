#include "link/chord.h"
#include "support/table.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;

class ChordTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesWhatIsHeld_data()
    {
        const Table<QList<qint64>, QString> row{"pitches", "name"};
        row("nothing held", {}, {});
        row("an octave and a fifth are two notes", {60, 67, 72}, {});
        row("a cluster is none", {60, 61, 62}, {});
        row("triad", {60, 64, 67}, u"C MAJOR"_s);
        row("any order, doubled", {67, 76, 60, 64, 72, 60}, u"C MAJOR"_s);
        row("inversion keeps its root", {64, 67, 72}, u"C MAJOR"_s);
        row("seventh beats the triad in it", {57, 60, 64, 67}, u"A MINOR 7"_s);
        row("also over another bass", {60, 64, 67, 69}, u"A MINOR 7"_s);
        row("an augmented triad goes by its bass", {60, 64, 68}, u"C AUG"_s);
        row("and another bass", {64, 68, 72}, u"E AUG"_s);
        row("the bass decides between suspensions", {60, 65, 67}, u"C SUS 4"_s);
        row("the same notes over F", {53, 60, 67}, u"F SUS 2"_s);
        row("without its root in the bass the lower class wins", {55, 60, 65}, u"C SUS 4"_s);
        row("diminished", {60, 66, 72, 75}, u"C DIM"_s);
        row("flats are named flat", {58, 62, 65, 68}, u"B♭ 7"_s);
        row("all twelve", {60, 61, 62, 63, 64, 65, 66, 67, 68, 69, 70, 71}, u"C MAJOR 7"_s);
        row("below zero", {-12, -8, -5}, u"C MAJOR"_s);
        row("at the ends of the numbers",
            {std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max(), 0},
            u"C MAJOR"_s);
    }

    void namesWhatIsHeld()
    {
        QFETCH(QList<qint64>, pitches);
        const auto name =
            chordName({pitches.constData(), static_cast<std::size_t>(pitches.size())});
        QTEST(name.value_or(QString()), "name");
    }
};

QTEST_GUILESS_MAIN(ChordTest)
#include "chord_test.moc"
