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

    /// All that lies on a key's middle, back to front: foot + length, width and lower colour.
    [[nodiscard]] QString on(int pitch) const
    {
        const auto x = static_cast<float>(keyboard::centre(pitch, width / 52));
        QStringList list;
        for (const Layer &layer : scene.picture()) {
            for (const Sprite &s : layer.sprites) {
                const bool spark = s.additive && s.halfWidth < 5;
                if (std::abs(s.x - x) > 0.01 || spark || s.halfHeight == height / 2)
                    continue;
                const double inset = !s.additive && s.radius > 0 ? 1 : 0;
                list << u"%1 %2+%3 x%4 %5"_s.arg(s.additive ? u"glow"_s
                        : s.radius > 0                      ? u"bar"_s
                                                            : u"box"_s,
                    num(s.y - s.halfHeight - inset), num(2 * (s.halfHeight + inset)),
                    num(2 * (s.halfWidth + inset)), hex(s.bottom));
            }
        }
        return list.join(u", "_s);
    }
    /// How many sparks fly, and the extent of their cloud in points from the keys' upper edge.
    [[nodiscard]] QString sparks() const
    {
        int count = 0;
        float low = 0;
        float high = 0;
        for (const Sprite &s : scene.picture()[1].sprites) {
            if (!s.additive || s.halfWidth >= 5)
                continue;
            ++count;
            low = std::min(low, s.y - 160);
            high = std::max(high, s.y - 160);
        }
        return u"%1 from %2 to %3"_s.arg(count).arg(std::lround(low)).arg(std::lround(high));
    }

    /// Where the grid's lines stand, one a C, and where the first few rows lie, from the bottom.
    [[nodiscard]] QString grid() const
    {
        QStringList lines;
        QStringList rows;
        for (const Sprite &s : scene.picture()[0].sprites) {
            if (s.top.alpha == 0.09F)
                lines << u"%1 %2+%3 x%4"_s.arg(
                    num(s.x), num(s.y - s.halfHeight), num(2 * s.halfHeight), num(2 * s.halfWidth));
            if (s.top.alpha == 0.05F)
                rows << u"%1 %2x%3"_s.arg(num(s.y), num(2 * s.halfWidth), num(2 * s.halfHeight));
        }
        return u"%1 from %2 to %3; %4 from %5, %6 to %7"_s.arg(lines.size())
            .arg(lines.first(), lines.last())
            .arg(rows.size())
            .arg(rows[0], rows[1], rows.last());
    }

    LinkFixture fixture;
    RainScene scene{fixture.link()};
};

const QString key60 = u"box 0+157 x18.5 "_s;
const QByteArrayList roll{"rollnew A Piece", "rolln 5,1,60,127,0;5,1,61,0,1", "rollstart 0 30"};

} // namespace

class RainTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void notesLieWhereTheyShould_data()
    {
        const Table<QByteArrayList, int, QString> row{"script", "pitch", "look"};
        const QString atRest = key60 + u"38ff8712"_s;
        row("nothing", {"!0"}, 60, atRest);
        // Falling: 330 points a second, onto the keys' edge at the note's time.
        row("not in sight yet", roll + QByteArrayList{"!3.05"}, 60, atRest);
        row("right hand, half a second early", roll + QByteArrayList{"!4.5"}, 60,
            u"glow 311+358 x50.4 38ff876c, bar 325+330 x16.8 88ffb7ff, box 0+157 x18.5 38ff8712"_s);
        row("left hand, sinking", roll + QByteArrayList{"!5.5"}, 61,
            u"glow -19+358 x33.6 33b3ad32, bar -5.33+330.67 x11.87 47bab6b3, box 0+160 x1 38ff8759, box 57.3+100.2 x13 38ff8773, box 57.8+99.2 x12 1a763fff, box 58.3+98.2 x11 020604ff"_s);
        row("all but sunk", roll + QByteArrayList{"!6.01"}, 60, u"box 0+157 x18.5 38ff8712"_s);
        row("sunk", roll + QByteArrayList{"!5.9", "!0.12"}, 60, atRest);
        row("over before it was in sight", roll + QByteArrayList{"!6.01"}, 62,
            u"box 0+157 x18.5 38ff8712"_s);
        row("after a step back", roll + QByteArrayList{"!7", "rollstart -4.5 30", "!0"}, 60,
            u"glow 311+358 x50.4 38ff876c, bar 325+330 x16.8 88ffb7ff, box 0+157 x18.5 38ff8712"_s);
        row("after the roll", roll + QByteArrayList{"!5", "rollstop", "!0"}, 60, atRest);
        // Played by the user: from 6 points on, 330 a second while held, then up and away.
        row("just pressed", {"!0", "on 60 127", "!0.01"}, 60,
            u"glow 146+34 x53.76 38ff8795, bar 159.21+7.58 x18.38 92ffbdff, box 0+157 x18.5 8cffc7ff, glow 110+100 x100 8cffc741"_s);
        row("held", {"!0", "on 60 64", "!1"}, 60,
            u"glow 146+358 x53.76 38ff876d, bar 160+330 x16.8 6fffa8df, box 0+157 x18.5 8cffc7ff, glow 110+100 x100 8cffc78a"_s);
        row("held for long", {"!0", "on 60 64", "!9"}, 60,
            u"glow 146+828 x53.76 38ff876d, bar 160+800 x16.8 6fffa8df, box 0+157 x18.5 8cffc7ff, glow 110+100 x100 8cffc78a"_s);
        row("let go", {"!0", "on 60 64", "!1", "on 60 0", "!0.04"}, 60,
            u"glow 159.2+358 x53.76 38ff876d, bar 173.2+330 x16.8 6fffa8df, box 0+157 x18.5 70ffb2b0, glow 110+100 x100 8cffc76b"_s);
        row("a stall leaps no further than a step", {"!0", "on 60 64", "!1", "on 60 0", "!1.5"}, 60,
            u"glow 162.5+358 x53.76 38ff876d, bar 176.5+330 x16.8 6fffa8df, box 0+157 x18.5 38ff8712"_s);
        row("gone through the upper edge", {"!0", "on 60 64", "!1", "on 60 0", "+2"}, 60, atRest);
        row("pressed again", {"!0", "on 60 64", "!0.5", "on 60 127", "!0.03"}, 60,
            u"glow 155.9+193 x53.76 38ff876d, glow 146+37.9 x53.76 38ff8795, bar 169.9+165 x16.8 6fffa8df, bar 159.34+11.21 x18.11 92ffbdff, box 0+157 x18.5 8cffc7ff, glow 110+100 x100 8cffc7c3"_s);
        // Played by the engine.
        row("the engine's", {"!0", "out 60 64", "!0.5"}, 60,
            u"glow 146+193 x53.76 33b3ad2e, bar 160+165 x16.8 33b3ad8c, box 0+157 x18.5 33b3adff"_s);
        row("both on one key", {"!0", "out 60 64", "on 60 64", "!0.5", "on 60 0", "!0.04"}, 60,
            u"glow 146+206.2 x53.76 33b3ad2e, glow 159.2+193 x53.76 38ff876d, bar 160+178.2 x16.8 33b3ad8c, bar 173.2+165 x16.8 6fffa8df, box 0+157 x18.5 70ffb2b0, glow 110+100 x100 8cffc76b"_s);
        const QByteArrayList under{"rollnew A Piece", "rollstart 0 30", "!0", "out 60 64"};
        row("the engine's under a roll", under + QByteArrayList{"!0.5"}, 60,
            u"box 0+157 x18.5 33b3adff, glow 115+90 x90 8cffc779"_s);
        row("the engine's under a roll, let go",
            under + QByteArrayList{"!0.5", "out 60 0", "!0.09"}, 60,
            u"box 0+157 x18.5 37ec914d, glow 115+90 x90 8cffc73c"_s);
        row("off the keyboard", {"!0", "on 20 90", "on 109 90", "!0.1"}, 21,
            u"box 0+157 x18.5 38ff8712"_s);
    }

    void notesLieWhereTheyShould()
    {
        QFETCH(QByteArrayList, script);
        QFETCH(int, pitch);
        const Stand stand(script);
        QTEST(stand.on(pitch), "look");
    }

    void theGridDrifts_data()
    {
        const Table<QByteArrayList, QString> row{"script", "grid"};
        row("at first", {"!0"},
            u"8 from 40 160+640 x1 to 1020 160+640 x1; 11 from 240 1040x1, 320 1040x1 to 1040 1040x1"_s);
        row("a second later", {"!1"},
            u"8 from 40 160+640 x1 to 1020 160+640 x1; 11 from 210 1040x1, 290 1040x1 to 1010 1040x1"_s);
    }

    void theGridDrifts()
    {
        QFETCH(QByteArrayList, script);
        const Stand stand(script);
        QTEST(stand.grid(), "grid");
    }

    void sparksFly_data()
    {
        const Table<QByteArrayList, QString> row{"script", "sparks"};
        row("a soft key", {"!0", "on 60 1", "!0.1"}, u"14 from 0 to 16"_s);
        row("a hard key", {"!0", "on 60 127", "!0.1"}, u"30 from 0 to 51"_s);
        row("a hard key, a little later", {"!0", "on 60 127", "!0.35"}, u"38 from 0 to 176"_s);
        row("held for long", {"!0", "on 60 127", "!5"}, u"16 from 0 to 66"_s);
        row("let go", {"!0", "on 60 127", "!5", "on 60 0", "!0.4"}, u"3 from 0 to 39"_s);
        row("let go for long", {"!0", "on 60 127", "!5", "on 60 0", "!0.7"}, u"0 from 0 to 0"_s);
        row("the engine", {"!0", "out 60 127", "!0.1"}, u"0 from 0 to 0"_s);
        row("the engine under a roll", {"rollstart 0 30", "!0", "out 60 127", "!0.1"},
            u"20 from 0 to 42"_s);
    }

    void sparksFly()
    {
        QFETCH(QByteArrayList, script);
        const Stand stand(script);
        QTEST(stand.sparks(), "sparks");
    }

    void progressFollowsTheRoll_data()
    {
        const Table<QByteArrayList, double> row{"script", "part"};
        const QByteArrayList ten{"rollnew A", "rollstart 0 10"};
        row("before", {"rollnew A", "rollstart 1 10", "!0.5"}, 0.0);
        row("a quarter", ten + QByteArrayList{"!2.5"}, 0.25);
        row("over", ten + QByteArrayList{"!11"}, 1.0);
        row("a length below a second", {"rollnew A", "rollstart 0 0.1", "!0.4"}, 0.4);
        row("stopped", ten + QByteArrayList{"!5", "rollstop", "!0"}, 0.0);
    }

    void progressFollowsTheRoll()
    {
        QFETCH(QByteArrayList, script);
        QFETCH(double, part);
        const Stand stand(script);
        const SpriteList &lights = stand.scene.picture()[1].sprites;
        const Sprite progress = *std::ranges::find(lights, 1.5F, &Sprite::halfHeight);
        QVERIFY(std::abs(progress.halfWidth * 2 / width - part) < 1e-4);
        QCOMPARE(progress.y + progress.halfHeight, height);
    }

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

    void wordsSayWhatHappens_data()
    {
        const Table<QByteArrayList, QStringList> row{"script", "words"};
        const QString title = u"KELO  //  VISUALISER"_s;
        row("at first", {"!0"}, {title});
        row("all at once",
            {"rollnew A Short Song", "buttons 108 61 300", "on 60 9", "on 64 9", "on 67 9",
                "say Listen.", "paused 1", "!0"},
            {u"1"_s, u"2"_s, title, u"C MAJOR"_s, u"NOW PLAYING  ·  A SHORT SONG"_s, u"Listen."_s,
                u"PAUSED  ·  RETURN OR KEY 6 TO CARRY ON"_s});
        row("offline", {"say Listen.", "done", "state OFFLINE", "!0"},
            {title, u"ENGINE OFFLINE"_s});
    }

    void wordsSayWhatHappens()
    {
        QFETCH(QByteArrayList, script);
        const Stand stand(script);
        const Picture &picture = stand.scene.picture();
        QTEST(words(picture[0].labels) + words(picture[1].labels), "words");
    }

    void highContrastLightensEveryWord()
    {
        const QByteArrayList script{"rollnew A Song", "say Listen.", "paused 1", "!0"};
        const Stand plain(script);
        const Stand light(QByteArrayList{"access contrast 1"} + script);
        const LabelList &before = plain.scene.picture()[1].labels;
        for (qsizetype i = 0; i < before.size(); ++i)
            QVERIFY(light.scene.picture()[1].labels[i].colour.red > before[i].colour.red + 0.3F);
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
