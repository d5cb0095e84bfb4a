#include "script.h"
#include "support/table.h"
#include "visual/notes/rain_scene.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

constexpr double width = 1040; // keys of 20 points
constexpr double height = 800; // the keys' upper edge at 160

class Stand {
public:
    explicit Stand(const QByteArrayList &script = {})
    {
        scene.resize(width, height);
        run(script);
    }
    void run(const QByteArrayList &script)
    {
        play(fixture, script, [this](double now) { scene.update(now); });
    }

    LinkFixture fixture;
    RainScene scene{fixture.link()};
};

} // namespace

class RainTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aResizeRebuildsWhatBelongsThere()
    {
        const QByteArrayList falling{
            "rollnew A Piece", "rolln 1,4,40,90,0;1.5,0.2,60,90,1;2,1,72,20,0", "rollstart 0 30"};
        Stand stand(falling + QByteArrayList{"on 64 90", "!1.6"});
        stand.scene.resize(900, 500);
        stand.run({"!0"});
        stand.scene.resize(width, height);
        stand.run({"!0"});
        QVERIFY(stand.scene.picture() == Stand(falling + QByteArrayList{"!1.6"}).scene.picture());

        stand.scene.resize(100, 800); // too narrow for a keyboard
        stand.run({"on 60 90", "!0.1"});
        QVERIFY(stand.scene.picture() == Picture(2));
    }

    void floodsAndAbsurdRollsStayBounded()
    {
        Stand stand;
        for (int i = 0; i < 5'000; ++i)
            stand.fixture.say({"on 60 127", "out 62 127"});
        stand.fixture.say({"rollnew A Piece",
            "rolln -1e300,1e300,60,90,0;-5,1e308,9223372036854775807,9223372036854775807,"
            "-9223372036854775808;0,-1e308,-9223372036854775808,-1,1;0,0,60,0,0",
            "rollstart 0 1e-300"});
        for (int i = 0; i < 200; ++i)
            stand.fixture.say({"rolln " + QByteArray("0,5,70,1,1;").repeated(200)});
        stand.run({"!0.01"});
        for (const Layer &layer : stand.scene.picture()) {
            QVERIFY(layer.sprites.size() < 45'000);
            for (const Sprite &s : layer.sprites)
                QVERIFY(std::isfinite(s.x + s.y + s.halfWidth + s.halfHeight + s.top.alpha));
        }
    }
};

QTEST_GUILESS_MAIN(RainTest)
#include "rain_test.moc"
