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
