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

/// All that lies on a key's middle, back to front: its upper edge (counted downwards) + length,
/// width, upper and lower colour.
QString on(const KeysStrip &strip, int pitch)
{
    const auto x = static_cast<float>(keyboard::centre(pitch, width / 52));
    QStringList list;
    for (const Sprite &s : strip.picture().front().sprites) {
        if (std::abs(s.x - x) > 0.01 || s.halfWidth > 20)
            continue;
        list << u"%1+%2 x%3 %4"_s.arg(num(height - s.y - s.halfHeight), num(2 * s.halfHeight),
            num(2 * s.halfWidth), hex(s.top));
        if (s.bottom != s.top)
            list.back() += u'-' + hex(s.bottom);
    }
    return list.join(u", "_s);
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

    void keysShowWhatHappens_data()
    {
        const Table<QByteArrayList, int, QString, bool> row{"script", "pitch", "look", "moves"};
        row("at rest", {}, 60, u""_s, false);
        row("a black one at rest", {}, 61,
            u"80.5+79 x2 1c7a45bf, 79.5+50.6 x13 1c7a45ff, 80.5+48.6 x11 020604ff"_s, false);
        row("just pressed", {"on 60 127", "+0.02"}, 60,
            u"74+92 x31 38ff87ff, 80+80 x19 38ff87ff, 159.5+1 x20 1c7a45bf, 79.5+1 x20 1c7a45bf"_s,
            true);
        row("a ripple grows", {"on 60 127", "+0.5"}, 60,
            u"51+23 x11.2 6effb09b-8cffc7f2, 74+92 x31 38ff87ff, 80+80 x19 38ff87ff, 159.5+1 x20 1c7a45bf, 79.5+1 x20 1c7a45bf"_s,
            true);
        row("full", {"on 60 64", "+60"}, 60,
            u"10+64 x11.2 38ff8700-8cffc7a6, 74+92 x31 38ff87ff, 80+80 x19 38ff87c6, 159.5+1 x20 1c7a45bf, 79.5+1 x20 1c7a45bf"_s,
            false);
        row("lifting away, its tip still rising", {"on 60 64", "+0.5", "on 60 0", "+0.5"}, 60,
            u"28+23 x11.2 50ff992f-6effb06b"_s, true);
        row("lifting away", {"on 60 64", "+10", "on 60 0", "+1"}, 60,
            u"10+18 x11.2 38ff8700-50ff992f"_s, true);
        row("gone", {"on 60 64", "+10", "on 60 0", "+1.4"}, 60, u""_s, false);
        row("a black one held", {"on 61 64", "+10"}, 61,
            u"10+64 x11.2 38ff8700-8cffc7a6, 80.5+79 x2 1c7a45bf, 79.5+50.6 x13 1c7a45ff, 80.5+48.6 x11 8cffc7ff"_s,
            false);
        row("what the engine plays", {"out 60 90", "+10"}, 60, u"80+80 x19 8cffc759"_s, false);
        row("what the engine plays, black", {"out 61 90", "+10"}, 61,
            u"80.5+79 x2 1c7a45bf, 79.5+50.6 x13 1c7a45ff, 80.5+48.6 x11 3dad6eff"_s, false);
        row("high contrast", {"#contrast", "out 60 90", "out 61 90", "+10"}, 60,
            u"80+80 x19 f5fff759"_s, false);
        row("a command key", {"buttons 60"}, 60,
            u"80+80 x19 38ff8729, 158.5+1 x18 38ff87cc, 80.5+1 x18 38ff87cc"_s, false);
        row("a command key held", {"buttons 60", "on 60 127", "+10"}, 60,
            u"10+64 x11.2 38ff8700-8cffc7f2, 74+92 x31 38ff87ff, 80+80 x19 38ff87ff, 159.5+1 x20 1c7a45bf, 79.5+1 x20 1c7a45bf, 158.5+1 x18 38ff87cc, 80.5+1 x18 38ff87cc"_s,
            false);
    }

    void keysShowWhatHappens()
    {
        QFETCH(QByteArrayList, script);
        QFETCH(int, pitch);
        LinkFixture fixture;
        fixture->followContrast(script.contains("#contrast"));
        play(fixture, script, [](double) {});
        KeysStrip strip;
        strip.update(fixture.link(), width, height, fixture.time.now());
        QTEST(on(strip, pitch), "look");
        QTEST(strip.moves(), "moves");
    }

    void commandKeysAreMarkedOnce()
    {
        LinkFixture fixture;
        fixture.say({"buttons 108 107 105 103 101 100 98 96 95 93 91 108 61 -5", "on 105 64"});
        fixture.time.advance(1);
        KeysStrip strip;
        strip.update(fixture.link(), width, height, fixture.time.now());
        const LabelList &labels = strip.picture().front().labels;
        QCOMPARE(words(labels).join(QString()), u"12345678HKK"_s);
        for (const Label &label : labels) {
            // Only where a ripple is behind it there is a plate.
            QCOMPARE(label.ground == Label::Ground::Plate, label.text == u"3"_s);
            QCOMPARE(label.size, 8.5);
            QVERIFY(std::abs(label.y + label.size * 0.73 / 2 - (height - 72)) < 1e-9);
        }
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
