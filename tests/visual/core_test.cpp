#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/ring/core_scene.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

class Stand {
public:
    Stand()
    {
        scene.resize(400, 440);
        fixture->engineIs(EngineState::Online);
    }
    void run(double seconds, double step = 1.0 / 60)
    {
        for (double t = 0; t < seconds; t += step) {
            fixture.time.advance(step);
            scene.update(fixture.link(), fixture.time.now());
        }
    }
    [[nodiscard]] double highest() const
    {
        const VoiceFrame bands = scene.look().bands;
        return *std::ranges::max_element(bands);
    }
    [[nodiscard]] double lowest() const
    {
        const VoiceFrame bands = scene.look().bands;
        return *std::ranges::min_element(bands);
    }
    [[nodiscard]] QStringList words() const
    {
        QStringList list;
        for (const Label &label : scene.labels())
            list << label.text;
        return list;
    }

    LinkFixture fixture;
    CoreScene scene;
};

} // namespace

class CoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRingBreathesSpeaksAndFallsSilent()
    {
        Stand stand;
        stand.run(3);
        for (int i = 0; i < 60; ++i) {
            stand.run(0.1);
            QVERIFY(stand.lowest() > 0.01 && stand.highest() < 0.09);
        }
        // Speech without a spectrum shimmers; with one it follows the bands.
        stand.fixture.say({"say Good evening to you all."});
        stand.run(0.5);
        QVERIFY(stand.highest() > 0.25);
        stand.fixture.say({"spec 1 new"});
        for (int i = 0; i < 120; ++i)
            stand.fixture.say({"spec 1 " + QByteArray::number(i) + " zaaaaaaaaaaaaaaa"});
        QVERIFY(!stand.fixture->voiceFrames.empty());
        stand.fixture.say({"start", "word 0 4 300"});
        stand.run(1);
        QVERIFY(stand.scene.look().bands[0] > stand.scene.look().bands[8] + 0.2);
        QCOMPARE(stand.fixture->level, stand.scene.look().level);
        QVERIFY(stand.scene.look().level > 0);
        stand.fixture.say({"done"});
        stand.fixture->engineIs(EngineState::Offline);
        stand.run(4);
        QVERIFY(stand.highest() < 1e-3);
        QCOMPARE(stand.scene.look().opacity, 0.35);
        QVERIFY(std::abs(stand.scene.look().amplitude - 0.04) < 1e-3);
    }

    void onlyFreshKeysLiftTheBands_data()
    {
        // band: the one that is lifted highest, or -1
        const Table<QByteArray, double, int> row{"key", "age", "band"};
        row("the lowest key", "on 21 127"_ba, 0.2, 0);
        row("the highest key", "on 108 127"_ba, 0.2, 15);
        row("the middle", "on 64 127"_ba, 0.2, 7);
        row("too old", "on 64 127"_ba, 2.5, -1);
        row("far off the keyboard", "on 9223372036854775807 127"_ba, 0.2, -1);
    }

    void onlyFreshKeysLiftTheBands()
    {
        QFETCH(QByteArray, key);
        QFETCH(double, age);
        QFETCH(int, band);
        Stand stand;
        stand.fixture.say({key});
        stand.run(age);
        if (band < 0) {
            QVERIFY(stand.highest() < 0.1);
            return;
        }
        QVERIFY(stand.highest() > 0.2);
        const VoiceFrame bands = stand.scene.look().bands;
        QCOMPARE(std::ranges::max_element(bands) - bands.begin(), band);
    }

    void bandsStayInBoundsUnderAnyStep_data()
    {
        const Table<double> row{"step"};
        row("no time passes", 0.0);
        row("120 Hz", 1.0 / 120);
        row("24 Hz", 1.0 / 24);
        row("stalled", 10.0);
    }

    void bandsStayInBoundsUnderAnyStep()
    {
        QFETCH(double, step);
        Stand stand;
        for (int i = 0; i < 300; ++i) {
            stand.fixture.say({"on 64 9223372036854775807", i % 9 == 0 ? "say Hello." : "done"});
            stand.fixture.time.advance(step);
            stand.scene.update(stand.fixture.link(), stand.fixture.time.now());
            QVERIFY(stand.lowest() >= 0 && stand.highest() <= 1.4);
            QVERIFY(stand.scene.look().level >= 0 && stand.scene.look().level <= 1);
        }
        QVERIFY(stand.scene.look().time < 63);
    }

    void wordsFollowTheState_data()
    {
        const Table<QByteArrayList, QString, QStringList> row{"lines", "state", "words"};
        row("listening", {"mode teach"}, u"ONLINE"_s, {u"LESSON"_s, u"LISTENING"_s});
        row("speaking", {"mode teach", "say Hello."}, u"ONLINE"_s, {u"LESSON"_s, u"SPEAKING"_s});
        row("paused", {"say Hello.", "paused 1"}, u"ONLINE"_s, {u"PAUSED"_s, u"RETURN OR KEY 6"_s});
        row("offline", {}, u"OFFLINE"_s, {u"OFFLINE"_s});
    }

    void wordsFollowTheState()
    {
        QFETCH(QByteArrayList, lines);
        QFETCH(QString, state);
        QFETCH(QStringList, words);
        Stand stand;
        for (const QByteArray &line : lines)
            stand.fixture->handle(line);
        stand.fixture.bring(state);
        stand.run(0.01);
        QCOMPARE(stand.words(), words);
    }

    void wordsFitIntoTheHeart_data()
    {
        // full: whether they have their own size
        const Table<double, QString, bool> row{"side", "state", "full"};
        row("a small ring", 180.0, u"ONLINE"_s, false);
        row("a long word", 283.0, u"RESTARTING"_s, false);
        row("room enough", 560.0, u"ONLINE"_s, true);
    }

    void wordsFitIntoTheHeart()
    {
        QFETCH(double, side);
        QFETCH(QString, state);
        Stand stand;
        stand.scene.resize(side, side);
        stand.fixture.bring(state);
        stand.run(0.1);
        const QRectF ring = stand.scene.ringPlace();
        for (const Label &label : stand.scene.labels()) {
            const double half = static_cast<double>(label.text.size()) * label.size * 0.602 / 2;
            const double baseline = label.y - (side - ring.center().y());
            for (const double y : {baseline, baseline + label.size * 0.73})
                QVERIFY(std::hypot(half, y) < 0.30 * ring.width() / 2);
            QTEST(label.size == 15 || label.size == 8.5, "full");
        }
    }

    void picturesLieAboveTheScope()
    {
        Stand stand;
        const QRectF ring = stand.scene.ringPlace();
        QCOMPARE(ring.center(), QPointF(200, 200));
        QVERIFY(ring.width() > 300 && ring.bottom() <= stand.scene.scopePlace().top());
        stand.scene.resize(60, 400);
        stand.run(0.1);
        QVERIFY(stand.scene.ringPlace().isEmpty());
        QVERIFY(stand.scene.sprites().empty());
        QVERIFY(stand.lowest() > 0); // it goes on moving
    }
};

QTEST_GUILESS_MAIN(CoreTest)
#include "core_test.moc"
