#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/motion/frame_clock.h"
#include "visual/notes/rain_scene.h"
#include "visual/sprites/palette.h"

#include <QTest>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

constexpr double width = 1040; // keys of 20 points
constexpr double height = 800;
constexpr double floorY = 160;

/// A scene over a link, and what can be seen in it.
class Stand {
public:
    Stand() { scene.resize(width, height); }

    void frame(double later = 0)
    {
        fixture.time.advance(later);
        scene.update(fixture.time.now());
    }
    /// Bars on the key, lowest first: falling or live, not the glows behind them.
    [[nodiscard]] SpriteList bars(int pitch) const
    {
        SpriteList found;
        const auto x = static_cast<float>(keyboard::centre(pitch, width / 52));
        std::ranges::copy_if(scene.sprites(), std::back_inserter(found),
            [x](const Sprite &s) { return s.x == x && !s.additive && s.radius > 0; });
        std::ranges::sort(found, {}, &Sprite::y);
        return found;
    }
    [[nodiscard]] qsizetype lights(double size) const
    {
        return std::ranges::count_if(scene.sprites(), [size](const Sprite &s) {
            return s.additive && std::abs(s.halfWidth * 2 - size) < 0.01 && s.y == floorY;
        });
    }
    [[nodiscard]] QString label(double y) const
    {
        for (const Label &label : scene.labels()) {
            if (label.y == y)
                return label.text;
        }
        return {};
    }

    LinkFixture fixture;
    RainScene scene{fixture.link()};
};

double foot(const Sprite &bar)
{
    return bar.y - bar.halfHeight - 1; // a bar is drawn a point within its length
}

double length(const Sprite &bar)
{
    return bar.halfHeight * 2 + 2;
}

} // namespace

class RainTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void notesLandOnTime_data()
    {
        const Table<double> row{"refresh"};
        row("24 Hz", 24.0);
        row("60 Hz", 60.0);
        row("120 Hz", 120.0);
        row("irregular", 0.0);
    }

    void notesLandOnTime()
    {
        QFETCH(double, refresh);
        Stand stand;
        stand.fixture.say({"rollnew A Piece", "rolln 2.5,1,60,90,0", "rollstart 1 30"});
        const double due = stand.fixture.time.now() + 1 + 2.5;
        std::mt19937 random(7);
        double step = 0;
        do {
            QVERIFY(stand.fixture.time.now() <= due);
            step = refresh > 0 ? 1 / refresh : 0.001 + static_cast<double>(random() % 45) / 1000;
            stand.frame(step);
        } while (stand.bars(60).empty() || foot(stand.bars(60).front()) > floorY);
        const double late = stand.fixture.time.now() - due;
        QVERIFY2(late > -1e-6 && late < step + 1e-6, QByteArray::number(late));
    }

    void notesComeAndGo_data()
    {
        // foot: of its bar, in points from below
        const Table<double, double> row{"elapsed", "foot"};
        const double lead = (height - floorY) / 330;
        constexpr double hidden = -1000;
        row("before it can be seen", 5 - lead - 0.01, hidden);
        row("at the upper edge", 5 - lead + 1e-6, height);
        row("late: where it belongs", 4.5, floorY + 0.5 * 330);
        row("sounding: sunk in part", 5.5, floorY - 0.5 * 330);
        row("over before it was seen", 6.001, hidden);
        row("a fraction of its length left", 5.99, floorY - 0.99 * 330);
    }

    void notesComeAndGo()
    {
        QFETCH(double, elapsed);
        QFETCH(double, foot);
        Stand stand;
        stand.fixture.say({"rollnew A Piece", "rolln 5,1,60,90,0", "rollstart 0 30"});
        stand.frame(elapsed);
        const SpriteList bars = stand.bars(60);
        QCOMPARE(bars.size(), foot <= -1000 ? 0U : 1U);
        if (bars.empty())
            return;
        QVERIFY(std::abs(::foot(bars.front()) - foot) < 0.1);
        QVERIFY(std::abs(length(bars.front()) - 330) < 0.1);
        stand.frame(20);
        QVERIFY(stand.bars(60).empty());
    }

    void progressFollowsTheRoll()
    {
        Stand stand;
        const auto progress = [&stand] {
            return stand.scene.sprites().back().halfWidth * 2 / width;
        };
        stand.frame();
        QCOMPARE(progress(), 0.0);
        stand.fixture.say({"rollnew A Piece", "rollstart 0 40"});
        stand.frame(10);
        QCOMPARE(progress(), 0.25);
        stand.frame(100);
        QCOMPARE(progress(), 1.0);
        stand.fixture.say({"rollstop"});
        stand.frame();
        QCOMPARE(progress(), 0.0);
        stand.fixture.say({"rollnew Short", "rollstart 0 0.5"});
        stand.frame(0.25);
        QCOMPARE(progress(), 0.25); // too short to divide by: seconds count
    }

    void aResizePutsTheRollBackInPlace()
    {
        Stand stand;
        stand.fixture.say({"rollnew A Piece", "rolln 1,4,40,90,0;1.5,0.2,60,90,1;2,1,72,20,0",
            "rollstart 0 30", "on 64 90"});
        stand.frame(1.6);
        QCOMPARE(stand.bars(64).size(), 1U);
        stand.scene.resize(900, 500);
        stand.frame();
        QVERIFY(stand.bars(64).empty()); // what was played live is dropped
        stand.scene.resize(width, height);
        stand.frame();
        const SpriteList again = stand.scene.sprites();

        Stand untouched;
        untouched.fixture.say(
            {"rollnew A Piece", "rolln 1,4,40,90,0;1.5,0.2,60,90,1;2,1,72,20,0", "rollstart 0 30"});
        untouched.frame(1.6);
        QVERIFY(again == untouched.scene.sprites());
    }

    void aStepBackLetsNotesFallAgain()
    {
        Stand stand;
        stand.fixture.say(
            {"rollnew A Piece", "rolln 1,0.5,60,90,0;2,0.5,62,90,0", "rollstart 0 30"});
        stand.frame(1.9);
        QVERIFY(stand.bars(60).empty());
        // The engine carries on after a pause from where it stopped.
        stand.fixture.say({"rollstart -0.8 30"});
        stand.frame();
        QCOMPARE(stand.bars(60).size(), 1U);
        QVERIFY(std::abs(foot(stand.bars(60).front()) - (floorY + 0.2 * 330)) < 0.1);
        QCOMPARE(stand.bars(62).size(), 1U);
    }

    void heldNotesGrowAndFloatAway()
    {
        Stand stand;
        stand.frame();
        stand.fixture.say({"on 60 127"});
        stand.frame();
        QVERIFY(std::abs(length(stand.bars(60).front()) - 6) < 2);
        stand.frame(1);
        QVERIFY(std::abs(length(stand.bars(60).front()) - 330) < 0.1);
        QCOMPARE(foot(stand.bars(60).front()), floorY);
        stand.frame(10);
        QVERIFY(std::abs(length(stand.bars(60).front()) - height) < 0.1);

        // A second press lets the first bar go.
        stand.fixture.say({"on 60 90"});
        stand.frame(0.05);
        QCOMPARE(stand.bars(60).size(), 2U);
        stand.fixture.say({"on 60 0"});
        // A stalled frame moves it by no more than a step of 0.05 s.
        stand.frame(3);
        QVERIFY(std::ranges::any_of(stand.bars(60),
            [](const Sprite &s) { return std::abs(foot(s) - (floorY + 0.05 * 330)) < 0.6; }));
        // Both leave through the upper edge, at 330 points a second.
        for (int i = 0; i < 36; ++i)
            stand.frame(0.05);
        QCOMPARE(stand.bars(60).size(), 2U);
        for (int i = 0; i < 4; ++i)
            stand.frame(0.05);
        QVERIFY(stand.bars(60).empty());

        stand.fixture.say({"on 20 90", "on 109 90"});
        stand.frame();
        QVERIFY(stand.bars(20).empty() && stand.bars(109).empty());
    }

    void bothPlayersMayHoldOnePitch()
    {
        Stand stand;
        stand.fixture.say({"on 60 127", "out 60 127"});
        stand.frame(0.5);
        QCOMPARE(stand.bars(60).size(), 2U);
        QCOMPARE(stand.lights(100), 1); // only the user's notes have a lamp here
        stand.fixture.say({"out 60 0"});
        stand.frame(0.05);
        const SpriteList bars = stand.bars(60);
        QCOMPARE(foot(bars.front()), floorY); // the user's is still held
        QCOMPARE(bars.front().bottom, mixed(colours::green, white, 0.45).faded(1));
        QVERIFY(foot(bars.back()) > floorY);
        QCOMPARE(bars.back().bottom, colours::teal.faded(0.55));
    }

    void theEngineOnlyFlashesUnderARoll()
    {
        Stand stand;
        stand.fixture.say({"rollnew A Piece", "rollstart 0 30", "out 60 127", "on 64 127"});
        stand.frame(0.04);
        QVERIFY(stand.bars(60).empty());
        QCOMPARE(stand.bars(64).size(), 1U);
        QCOMPARE(stand.lights(90), 1);
        QCOMPARE(stand.lights(100), 1);
        stand.fixture.say({"out 60 0"});
        stand.frame(0.1);
        QCOMPARE(stand.lights(90), 1); // fading
        stand.frame(0.1);
        QCOMPARE(stand.lights(90), 0);
        QCOMPARE(stand.lights(100), 1);
    }

    void keysGoOutWhenReleased()
    {
        Stand stand;
        const auto colour = [&stand](int pitch) {
            const auto x = static_cast<float>(keyboard::centre(pitch, 20));
            const float wide = keyboard::isBlack(pitch) ? 11 : 18.5F; // within its line
            const auto key = std::ranges::find_if(stand.scene.sprites(), [&](const Sprite &s) {
                return std::abs(s.x - x) < 0.01 && std::abs(s.halfWidth * 2 - wide) < 0.01
                    && s.y < floorY && s.radius == 0;
            });
            return key->bottom;
        };
        stand.frame();
        QCOMPARE(colour(60), colours::green.faded(0.07));
        QCOMPARE(colour(61), colours::bg);
        stand.fixture.say({"on 60 64", "out 61 64"});
        stand.frame();
        QCOMPARE(colour(60), colours::soft);
        QCOMPARE(colour(61), colours::teal);
        stand.fixture.say({"on 60 0", "out 61 0"});
        stand.frame(0.06);
        QCOMPARE(colour(61),
            mixed(colours::teal, colours::bg, (stand.fixture.time.now() - 1000) / 0.12));
        stand.frame(0.07);
        QVERIFY(std::abs(colour(60).alpha - 0.07F) < 1e-6F);
    }

    void sparksGoOut()
    {
        const auto drawn = [](const Sparks &sparks, double now) {
            SpriteList list;
            sparks.draw(list, now);
            return list;
        };
        const Sparks burst{.x = 100, .y = 50, .rate = 900, .count = 26, .speed = 400, .born = 5};
        QVERIFY(drawn(burst, 4.9).empty());
        QCOMPARE(drawn(burst, 5.2).size(), 26U);
        QVERIFY(drawn(burst, 5.2) == drawn(burst, 5.2)); // each frame has them where they were
        QVERIFY(!burst.isSpent(5.5));
        QVERIFY(burst.isSpent(6.1) && drawn(burst, 6.1).empty());

        Sparks fire{.rate = 34, .speed = 100, .born = 0};
        QVERIFY(drawn(fire, 1e6).size() <= 24); // however long it burns
        fire.out = 10;
        QVERIFY(!drawn(fire, 10.2).empty() && drawn(fire, 10.7).empty());
    }

    void wordsSayWhatHappens()
    {
        Stand stand;
        stand.frame();
        QCOMPARE(stand.label(height - 50), u"KELO  //  VISUALISER"_s);
        QCOMPARE(stand.scene.labels().size(), 1);
        stand.fixture.say({"rollnew A Short Song", "buttons 108", "on 60 9", "on 64 9", "on 67 9",
            "say Listen.", "paused 1"});
        stand.frame();
        QCOMPARE(stand.label(height - 124), u"NOW PLAYING  ·  A SHORT SONG"_s);
        QCOMPARE(stand.label(height - 96), u"C MAJOR"_s);
        QCOMPARE(stand.label(height - 40), u"Listen."_s);
        QCOMPARE(stand.label(height * 0.6), u"PAUSED  ·  RETURN OR KEY 6 TO CARRY ON"_s);
        QCOMPARE(stand.label(8), u"1"_s);
        stand.fixture.say({"done", "paused 0", "rollstop"});
        stand.fixture->engineIs(EngineState::Offline);
        stand.frame();
        QCOMPARE(stand.label(height * 0.6), u"ENGINE OFFLINE"_s);
        QCOMPARE(stand.label(height - 40), QString());
        QCOMPARE(stand.label(height - 124), QString());
    }

    void aNarrowSceneIsEmpty()
    {
        Stand stand;
        stand.scene.resize(100, 800);
        stand.fixture.say({"rollnew A Piece", "rolln 0,1,60,90,0", "rollstart 0 30", "on 60 90"});
        stand.frame(0.1);
        QVERIFY(stand.scene.sprites().empty());
        QVERIFY(stand.scene.labels().isEmpty());
    }

    void floodsAndAbsurdRollsStayBounded()
    {
        Stand stand;
        for (int i = 0; i < 20'000; ++i)
            stand.fixture.say({"on 60 127", "out 62 127"});
        stand.fixture.say({"rollnew A Piece",
            "rolln -1e300,1e300,60,90,0;-5,1e308,9223372036854775807,9223372036854775807,"
            "-9223372036854775808;0,-1e308,-9223372036854775808,-1,1;0,0,60,0,0",
            "rollstart 0 1e-300"});
        for (int i = 0; i < 200; ++i)
            stand.fixture.say({"rolln " + QByteArray("0,5,70,1,1;").repeated(200)});
        stand.frame(0.01);
        QVERIFY(stand.scene.sprites().size() < 60'000);
        for (const Sprite &s : stand.scene.sprites())
            QVERIFY(std::isfinite(s.x + s.y + s.halfWidth + s.halfHeight + s.radius + s.top.alpha));
    }

    void fallingIsSmoothUnderAJitteryClock_data()
    {
        // refresh: frames a second; leftOut: every so many frames one is
        const Table<double, int> row{"refresh", "leftOut"};
        row("60 Hz", 60.0, 0);
        row("120 Hz", 120.0, 0);
        row("60 Hz, frames left out", 60.0, 7);
    }

    void fallingIsSmoothUnderAJitteryClock()
    {
        QFETCH(double, refresh);
        QFETCH(int, leftOut);
        const double period = 1 / refresh;
        std::mt19937 random(1);
        FrameClock clock;
        double shown = clock.step(100, period);
        double worst = 0; // how far a step is from whole frames
        for (int i = 1; i < 500; ++i) {
            if (leftOut > 0 && i % leftOut == 0)
                continue;
            const double jitter =
                (static_cast<double>(random() % 1000) / 1000 - 0.5) * period * 0.6;
            const double now = 100 + i * period + jitter;
            const double next = clock.step(now, period);
            QVERIFY(next >= shown);
            QVERIFY(std::abs(next - now) < period);
            const double frames = (next - shown) / period;
            worst = std::max(worst, std::abs(frames - std::round(frames)));
            shown = next;
        }
        QVERIFY2(worst < 0.06, QByteArray::number(worst));
        QCOMPARE(clock.step(shown + 5, period), shown + 5); // after a stall it is exact at once
        QCOMPARE(clock.step(1, period), 1.0);
    }
};

QTEST_GUILESS_MAIN(RainTest)
#include "rain_test.moc"
