#include "script.h"
#include "support/table.h"
#include "visual/caption/caption_raster.h"
#include "visual/caption/caption_scene.h"
#include "visual/sprites/text.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

class CaptionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLightLeadsShortAndTrailsLong_data()
    {
        const Table<double, bool, QColor> row{"ahead", "contrast", "colour"};
        const auto rgb = [](float r, float g, float b) { return QColor::fromRgbF(r, g, b); };
        row("being spoken", 0.0, false, rgb(1, 1, 1));
        row("a third of the tail", 3.0, false, rgb(0.85F, 1, 0.78F + 0.22F * 2 / 3));
        row("long spoken", 9.0, false, rgb(0.55F, 1, 0.78F));
        row("long spoken, contrast", 500.0, true, rgb(0.93F, 1, 0.95F));
        row("half the lead", -1.1, false, rgb(0.58F, 0.73F, 0.65F));
        row("to come", -2.2, false, rgb(0.16F, 0.46F, 0.3F));
        row("to come, contrast", -1e18, true, rgb(0.55F, 0.72F, 0.62F));
    }

    void theLightLeadsShortAndTrailsLong()
    {
        QFETCH(double, ahead);
        QFETCH(bool, contrast);
        QTEST(captionColour(ahead, contrast).toQColor().toRgb(), "colour");
    }

    void largeLettersGiveWayToWholeLines()
    {
        for (const auto &[width, height, size] : {std::tuple{900.0, 127.0, 36.0},
                 {900.0, 126.0, 34.0}, {324.0, 228.0, 32.0}, {324.0, 40.0, 24.0}})
            QCOMPARE(captionSize(36, {width, height}), size);
    }

    void cellsCoverThePictureOnce_data()
    {
        const Table<QString, double> row{"text", "width"};
        row("one line", u"Good evening, Ann."_s, 900.0);
        row("wrapped", u"We take it hand by hand, two bars at a time, and then again."_s, 400.0);
        row("one long word", QString(200, u'x'), 300.0);
        row("signs beyond the basic plane", u"A 𝄞 clef ♭ and é"_s, 900.0);
        row("right to left", u"שלום Ann"_s, 900.0);
    }

    void cellsCoverThePictureOnce()
    {
        QFETCH(QString, text);
        QFETCH(double, width);
        const CaptionRaster raster = rasterise(text, mono(24), width, 1.5);
        QCOMPARE(raster.picture.size(), (raster.area.size() * 1.5).toSize());
        double covered = 0;
        for (const auto &[unit, place] : raster.cells) {
            QVERIFY(unit >= 0 && unit < text.size());
            QVERIFY(place.width() > 0 && raster.area.contains(place));
            covered += place.width() * place.height();
        }
        QCOMPARE(covered, raster.area.width() * raster.area.height());
    }
};

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    CaptionTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "caption_test.moc"
