#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/caption/caption_raster.h"
#include "visual/caption/caption_scene.h"
#include "visual/sprites/text.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTest>

#include <cmath>

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

    void theCaptionStaysThenFades()
    {
        LinkFixture fixture;
        CaptionScene scene;
        const auto opacityAfter = [&](double seconds) {
            fixture.time.advance(seconds);
            scene.update(fixture.link(), fixture.time.now());
            return std::round(scene.opacity() * 1000) / 1000;
        };
        QCOMPARE(opacityAfter(0), 0.0); // nothing said yet
        fixture.say({"say Good evening."});
        QCOMPARE(opacityAfter(0), 1.0);
        QCOMPARE(scene.glow(), 0.55);
        fixture.say({"done"});
        QCOMPARE(opacityAfter(2), 1.0);
        QCOMPARE(scene.glow(), 0.2);
        QCOMPARE(opacityAfter(0.8), 0.5);
        QCOMPARE(opacityAfter(0.8001), 0.0);
        fixture.say({"say "});
        QCOMPARE(opacityAfter(1), 0.0);
    }

    void linesRiseAndLeave()
    {
        LinkFixture fixture;
        CaptionScene scene;
        const auto update = [&](double seconds) {
            fixture.time.advance(seconds);
            scene.update(fixture.link(), fixture.time.now());
        };
        fixture.say({"say Good evening, everyone. Let us begin now.", "word 0 4 100"});
        update(0.5);
        QCOMPARE(scene.line().text, u"Good evening, everyone."_s);
        QVERIFY(scene.leaving().text.isEmpty());
        fixture.say({"word 24 3 200"});
        while (scene.line().start == 0)
            update(0.01);
        update(0.1);
        QCOMPARE(scene.line(), (CaptionLine{u"Let us begin now."_s, 24}));
        QCOMPARE(scene.leaving().text, u"Good evening, everyone."_s);
        QVERIFY(scene.arrival().offset > 0 && scene.arrival().offset < 10);
        QVERIFY(scene.departure().offset < 0);
        QVERIFY(std::abs(scene.arrival().opacity + scene.departure().opacity - 1) < 1e-9);
        update(0.3);
        QVERIFY(scene.leaving().text.isEmpty());
        QCOMPARE(scene.arrival().offset, 0.0);
        QCOMPARE(scene.arrival().opacity, 1.0);
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
        // The letters are in it, and their light reaches further than they do.
        qsizetype letters = 0;
        qsizetype lit = 0;
        for (int y = 0; y < raster.picture.height(); ++y) {
            for (int x = 0; x < raster.picture.width(); ++x) {
                letters += qRed(raster.picture.pixel(x, y)) > 40;
                lit += qGreen(raster.picture.pixel(x, y)) > 10;
            }
        }
        QVERIFY(letters > 100);
        QVERIFY(lit > letters * 2);
    }

    // Text is laid out, so there must be fonts; nothing is shown.
    void aLineStandsUnderEachWord()
    {
        const double letter = QFontMetricsF(mono(24)).horizontalAdvance(u'x');
        const CaptionRaster raster = rasterise(u"Left hand,  softly"_s, mono(24), 11 * letter, 1);
        const auto &words = raster.words;
        QCOMPARE(words.size(), 3U); // the last one in a line of its own
        QCOMPARE(words[1].start, 5);
        QVERIFY(qAbs(words[0].under.width() - 4 * letter) < 1);
        QVERIFY(qAbs(words[1].under.left() - words[0].under.left() - 5 * letter) < 1);
        QCOMPARE(words[1].under.top(), words[0].under.top());
        QVERIFY(words[2].under.top() > words[1].under.top() + 20);
        for (const auto &word : words)
            QVERIFY2(
                raster.area.contains(word.under) && word.under.height() >= 2, "it can be seen");
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
