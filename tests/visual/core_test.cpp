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
