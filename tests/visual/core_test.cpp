#include "script.h"
#include "support/table.h"
#include "visual/ring/core_scene.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

class Stand {
public:
    explicit Stand(const QByteArrayList &script, double side = 400)
    {
        scene.resize(side, side + 40);
        fixture->engineIs(EngineState::Online);
        run(script);
    }
    void run(const QByteArrayList &script)
    {
        play(fixture, script, [this](double now) { scene.update(fixture.link(), now); });
    }

    LinkFixture fixture;
    CoreScene scene;
};

} // namespace

class CoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRingMoves_data()
    {
        // In thousandths: bands 0, 5, 10 and 15, the level; the time of what flows, and how far the
        // first and the third arc have turned.
        const Table<QByteArrayList, QList<int>> row{"script", "numbers"};
        // Breath: 0.05 + 0.035 sin(1.1 t + 0.55 i), followed by the springs.
        row("breath", {"+3"}, {33, 54, 60, 28, 72, 60522, 856, -1382});
        row("breath, later", {"+4.5"}, {21, 84, 16, 79, 84, 62022, 1272, -2054});
        row("speech without a spectrum", {"+1", "say Good evening.", "+0.5"},
            {402, 209, 40, 303, 438, 59022, 515, -832});
        row("a word", {"+1", "say Good evening.", "+0.4", "word 0 4 300", "+0.1"},
            {503, 275, 51, 373, 479, 59022, 516, -834});
        row("the lowest key, hard", {"+1", "on 21 127", "+0.1"},
            {473, 18, 74, 37, 132, 58622, 324, -523});
        row("a key in the middle", {"+1", "on 65 64", "+0.2"},
            {85, 133, 159, 33, 217, 58722, 358, -578});
        row("a key long ago", {"+1", "on 65 127", "+1.41", "+0.8"},
            {26, 62, 52, 35, 72, 60732, 969, -1565});
        // Only the newest sixteen count.
        row("sixteen keys later",
            QByteArrayList{"+1", "on 21 127"}
                + QByteArrayList(16, "on 108 1").join("|on 108 0|").split('|')
                + QByteArrayList{"on 108 0", "+0.1"},
            {85, 18, 74, 193, 106, 58622, 323, -522});
        row("offline", {"+1", "on 21 127", "state OFFLINE", "+4"},
            {0, 0, 0, 0, 0, 62522, 1288, -2080});
        row("stalled", {"+1", "on 21 127", "!3"}, {48, 53, 46, 54, 90, 61522, 308, -498});
    }

    void theRingMoves()
    {
        QFETCH(QByteArrayList, script);
        QFETCH(QList<int>, numbers);
        Stand stand(script);
        const RingLook look = stand.scene.look();
        const SpriteList &arcs = stand.scene.picture().front().sprites;
        const auto turned = [&arcs](std::size_t sprite, double middle) {
            return std::remainder(arcs[sprite].angle - middle, 6.283185307);
        };
        const QList<double> measured{look.bands[0], look.bands[5], look.bands[10], look.bands[15],
            look.level, look.time, turned(0, 0.95), turned(4, 2.3)};
        QCOMPARE(measured.size(), 8);
        QStringList shown;
        bool same = numbers.size() == measured.size();
        for (qsizetype i = 0; i < measured.size(); ++i) {
            shown << QString::number(std::lround(measured[i] * 1000));
            same = same && std::abs(measured[i] * 1000 - numbers[i]) <= 1.01;
        }
        QVERIFY2(same, qPrintable(shown.join(u", "_s)));
        QCOMPARE(stand.fixture->level, look.level);
        QCOMPARE(look.amplitude, look.level + 0.04);
        QCOMPARE(look.opacity, script.contains("state OFFLINE") ? 0.35 : 1.0);
    }

    void aSpectrumMovesItsBands()
    {
        Stand stand({"+1", "say Good evening to you all.", "spec 1 new"});
        for (int i = 0; i < 120; ++i)
            stand.run({"spec 1 " + QByteArray::number(i) + " kfaaaaaaaaaaaaaa"});
        QVERIFY(!stand.fixture->voiceFrames.empty());
        stand.run({"start", "word 0 4 300", "+1"});
        const VoiceFrame heard = *stand.fixture->voiceBands(stand.fixture.time.now());
        const VoiceFrame shown = stand.scene.look().bands;
        for (const std::size_t i : {0U, 1U, 8U})
            QVERIFY2(std::abs(shown[i] - std::pow(heard[i], 1.35)) < 0.02,
                qPrintable(u"%1: %2 of %3"_s.arg(i).arg(shown[i]).arg(heard[i])));
    }

    void bandsStayInBoundsUnderAnyStep_data()
    {
        const Table<QByteArray> row{"frame"};
        row("no time passes", "!0");
        row("120 Hz", "!0.00833");
        row("24 Hz", "!0.0417");
        row("stalled", "!10");
    }

    void bandsStayInBoundsUnderAnyStep()
    {
        QFETCH(QByteArray, frame);
        Stand stand({});
        for (int i = 0; i < 300; ++i) {
            stand.run({"on 64 9223372036854775807", i % 9 == 0 ? "say Hello." : "done",
                "on -9223372036854775808 1", frame});
            for (const double band : stand.scene.look().bands)
                QVERIFY(band >= 0 && band <= 1.4);
            QVERIFY(stand.scene.look().level >= 0 && stand.scene.look().level <= 1);
        }
        QVERIFY(stand.scene.look().time < 63);
    }

    void wordsFollowTheState_data()
    {
        // sizes: of the words, in points; 0: any that fits
        const Table<QByteArrayList, double, QStringList, double> row{
            "script", "side", "words", "size"};
        row("listening", {"mode teach"}, 400.0, {u"LESSON"_s, u"LISTENING"_s}, 15.0);
        row("speaking", {"mode teach", "say Hello."}, 400.0, {u"LESSON"_s, u"SPEAKING"_s}, 15.0);
        row("paused", {"say Hello.", "paused 1"}, 400.0, {u"PAUSED"_s, u"RETURN OR KEY 6"_s}, 15.0);
        row("offline", {"state OFFLINE"}, 400.0, {u"OFFLINE"_s}, 15.0);
        row("a long word in a small ring", {"state RESTARTING"}, 240.0, {u"RESTARTING"_s}, 11.0);
        row("a ring too small for small words", {"mode teach"}, 140.0, {u"LESSON"_s}, 11.0);
        row("too small for anything", {"mode teach"}, 20.0, {}, 0.0);
    }

    void wordsFollowTheState()
    {
        QFETCH(QByteArrayList, script);
        QFETCH(double, side);
        QFETCH(double, size);
        const Stand stand(script + QByteArrayList{"!0"}, side);
        const LabelList &labels = stand.scene.picture()[1].labels;
        QTEST(words(labels), "words");
        const double middle = side + 40 - stand.scene.ringPlace().center().y();
        for (const Label &label : labels) {
            const bool first = &label == &labels.front();
            const bool wide = !first || label.size <= 11; // across the rim
            const double wave = stand.scene.ringPlace().width() / 2 * (wide ? 0.50 : 0.30);
            const double half = static_cast<double>(label.text.size()) * label.size * 0.602 / 2;
            for (const double y : {label.y - middle, label.y - middle + label.size * 0.73})
                QVERIFY2(std::hypot(half, y) < wave, qPrintable(label.text));
            QVERIFY(first ? size == 0 || label.size == size : label.size >= 11);
        }
    }
};

QTEST_GUILESS_MAIN(CoreTest)
#include "core_test.moc"
