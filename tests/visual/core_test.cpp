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
};

QTEST_GUILESS_MAIN(CoreTest)
#include "core_test.moc"
