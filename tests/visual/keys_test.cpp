#include "script.h"
#include "support/table.h"
#include "visual/keys/keyboard.h"
#include "visual/keys/keys_strip.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

// A strip whose keys are 20 points wide and 80 long.
constexpr double width = 52 * 20;
constexpr double height = 160;

} // namespace

class KeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysLieWhereTheyShould_data()
    {
        // centre: in key widths
        const Table<qint64, double, double> row{"pitch", "centre", "noteWidth"};
        row("the lowest key", 21, 0.5, 0.84);
        row("the lowest black key", 22, 1.0, 0.56);
        row("middle C", 60, 23.5, 0.84);
        row("C sharp", 61, 24.0, 0.56);
        row("the highest key", 108, 51.5, 0.84);
        row("white beyond the keyboard", 120, 0.5, 0.84);
        row("below zero", -1, 0.5, 0.84);
        row("absurd", std::numeric_limits<qint64>::min(), 0.5, 0.84);
    }

    void keysLieWhereTheyShould()
    {
        QFETCH(qint64, pitch);
        QTEST(keyboard::centre(pitch, 1), "centre");
        QTEST(keyboard::noteWidth(pitch, 1), "noteWidth");
        QCOMPARE(keyboard::whites.back(), 108);
        QVERIFY(!keyboard::hasBlackToRight(108));
    }

    void absurdNotesDrawNothingAbsurd()
    {
        LinkFixture fixture;
        fixture.say({"on 9223372036854775807 9223372036854775807", "on -9223372036854775808 1",
            "on 60 9223372036854775807", "buttons 61 -5 9223372036854775807 60"});
        fixture.time.advance(1);
        KeysStrip strip;
        strip.update(fixture.link(), width, height, fixture.time.now());
        for (const Sprite &sprite : strip.picture().front().sprites) {
            QVERIFY(std::isfinite(sprite.x + sprite.y + sprite.halfWidth + sprite.bottom.alpha));
            QVERIFY(sprite.x >= 0 && sprite.x <= width);
        }
        strip.update(fixture.link(), width, 80, fixture.time.now());
        QVERIFY(strip.picture() == Picture(1)); // too low for keys
    }
};

QTEST_GUILESS_MAIN(KeysTest)
#include "keys_test.moc"
