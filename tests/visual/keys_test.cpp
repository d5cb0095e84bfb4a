#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/keys/keyboard.h"
#include "visual/keys/keys_strip.h"
#include "visual/sprites/palette.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

// A strip whose keys are 20 points wide and 80 long.
constexpr double width = 52 * 20;
constexpr double height = 160;

SpriteList strip(LinkFixture &fixture)
{
    KeysStrip strip;
    strip.update(fixture.link(), width, height, fixture.time.now());
    return strip.sprites();
}

/// Number of shapes of that size and lower colour.
qsizetype count(const SpriteList &list, double wide, double tall, Colour colour)
{
    return std::ranges::count_if(list, [&](const Sprite &s) {
        return std::abs(s.halfWidth * 2 - wide) < 0.01 && std::abs(s.halfHeight * 2 - tall) < 0.01
            && s.bottom == colour;
    });
}

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

    void ripplesRiseAndLeave_data()
    {
        // held: seconds; letGo: seconds ago; negative: still held; foot: points above the keys'
        // edge band
        const Table<double, double, double, double> row{"held", "letGo", "foot", "tall"};
        row("too small to see", 0.02, -1.0, 0.0, 0.0);
        row("growing", 0.5, -1.0, 0.0, 23.0);
        row("full and held for long", 60.0, -1.0, 0.0, 64.0);
        row("lifting away, its tip still rising", 0.5, 0.5, 23.0, 23.0);
        row("lifting away at full height", 10.0, 1.0, 46.0, 18.0);
        row("gone", 10.0, 64 / 46.0 + 0.001, 0.0, 0.0);
    }

    void ripplesRiseAndLeave()
    {
        QFETCH(double, held);
        QFETCH(double, letGo);
        QFETCH(double, foot);
        QFETCH(double, tall);
        LinkFixture fixture;
        fixture.say({"on 60 127"});
        fixture.time.advance(held);
        if (letGo >= 0) {
            fixture.say({"on 60 0"});
            fixture.time.advance(letGo);
        }
        const SpriteList list = strip(fixture);
        const auto ripple = std::ranges::find_if(
            list, [](const Sprite &s) { return s.radius == 2 && s.feather == 0; });
        if (tall == 0) {
            QVERIFY(ripple == list.end());
            return;
        }
        QVERIFY(ripple != list.end());
        QCOMPARE(ripple->x, static_cast<float>(keyboard::centre(60, 20)));
        QCOMPARE(ripple->halfWidth * 2, 0.56F * 20);
        QVERIFY(std::abs(ripple->halfHeight * 2 - tall) < 0.01);
        QVERIFY(std::abs(ripple->y - ripple->halfHeight - (height - 74 + foot)) < 0.01);
    }

    void keysShowWhatHoldsThem()
    {
        LinkFixture fixture;
        fixture.say({"out 60 90", "out 61 90", "out 64 90", "on 64 127", "on 63 80"});
        const auto text = TextColours::of(false);
        const SpriteList list = strip(fixture);
        QCOMPARE(count(list, 19, 80, text.soft.faded(0.35)), 1); // 60; the player's hold of 64 wins
        QCOMPARE(count(list, 19, 80, colours::green.faded(1)), 1); // 64 at full velocity
        constexpr double insideLine = 80 * 0.62 - 1;
        QCOMPARE(count(list, 11, insideLine, text.soft), 1); // 63
        QCOMPARE(count(list, 11, insideLine, text.dim), 1); // 61
        QCOMPARE(count(list, 11, insideLine, colours::bg), 34);
        // Keys at rest share their lines with their neighbours: 38 left of the held one, 13 right.
        const Colour line = colours::shade.faded(0.75);
        QCOMPARE(count(list, 2, 79, line), 37 + 12);
        QCOMPARE(count(list, 1, 79, line), 2 + 2 + 2);
        // Black keys cover white ones.
        const auto first = std::ranges::find(list, text.dim, &Sprite::bottom);
        QVERIFY(
            std::none_of(first, list.end(), [](const Sprite &s) { return s.halfHeight == 40; }));
    }

    void commandKeysAreMarkedOnce()
    {
        LinkFixture fixture;
        fixture.say({"buttons 108 107 105 103 101 100 98 96 95 93 91 108", "on 107 64"});
        KeysStrip strip;
        strip.update(fixture.link(), width, height, fixture.time.now());
        QString marks;
        for (const Label &label : strip.labels())
            marks += label.text;
        QCOMPARE(marks, u"12345678HKK"_s);
        QCOMPARE(count(strip.sprites(), 19, 80, colours::green.faded(0.16)), 10); // 107 is down
        QCOMPARE(count(strip.sprites(), 18, 1, colours::green.faded(0.8)), 22); // but outlined too
    }

    void absurdNotesDrawNothingAbsurd()
    {
        LinkFixture fixture;
        fixture.say({"on 9223372036854775807 9223372036854775807", "on -9223372036854775808 1",
            "on 60 9223372036854775807", "buttons 61 -5 9223372036854775807 60"});
        fixture.time.advance(1);
        KeysStrip strip;
        strip.update(fixture.link(), width, height, fixture.time.now());
        QCOMPARE(strip.labels().size(), 1); // black keys and keys that are not there carry no mark
        for (const Sprite &sprite : strip.sprites()) {
            QVERIFY(std::isfinite(sprite.x + sprite.y + sprite.halfWidth + sprite.bottom.alpha));
            QVERIFY(sprite.x >= 0 && sprite.x <= width);
        }
    }
};

QTEST_GUILESS_MAIN(KeysTest)
#include "keys_test.moc"
