#include "hud/theme.h"

#include <QFontMetricsF>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace kelo {

class ThemeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsAsTheUserLeftIt();
    void textIsReadable_data();
    void textIsReadable();
    void contrastLightensTextAlone();
    void fontIsFixedWidth();

private:
    static double luminance(const QColor &color);
    static double ratio(const QColor &text, const QColor &ground);
};

/// Relative luminance and contrast ratio as the accessibility guidelines for the web define them.
double ThemeTest::luminance(const QColor &color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

double ThemeTest::ratio(const QColor &text, const QColor &ground)
{
    return (luminance(text) + 0.05) / (luminance(ground) + 0.05);
}

// Must run first: the theme reads the setting once.
void ThemeTest::startsAsTheUserLeftIt()
{
    QSettings().setValue(u"contrast"_s, true);
    QVERIFY(Hud::shared().contrast());
    QSettings().setValue(u"contrast"_s, false);
    QVERIFY(Hud::shared().contrast());
}

void ThemeTest::textIsReadable_data()
{
    QTest::addColumn<bool>("contrast");
    QTest::addColumn<double>("least");
    QTest::newRow("normal") << false << 4.5;
    QTest::newRow("high contrast") << true << 7.0;
}

void ThemeTest::textIsReadable()
{
    QFETCH(bool, contrast);
    QFETCH(double, least);
    Hud &hud = Hud::shared();
    hud.setContrast(contrast);
    for (const QColor &ground : {Hud::bg(), Hud::panel()}) {
        for (const QColor &text : {hud.soft(), hud.dim(), Hud::green()})
            QVERIFY2(ratio(text, ground) >= least, qPrintable(text.name()));
    }
    QVERIFY(ratio(Hud::green(), Hud::bg()) >= least); // and the other way: dark text on the accent
}

void ThemeTest::contrastLightensTextAlone()
{
    Hud &hud = Hud::shared();
    hud.setContrast(false);
    const QColor soft = hud.soft();
    const QColor dim = hud.dim();
    const QList<QColor> fixed{Hud::bg(), Hud::panel(), Hud::green(), Hud::faint()};

    QSignalSpy changed(&hud, &Hud::contrastChanged);
    hud.setContrast(true);
    hud.setContrast(true);
    QCOMPARE(changed.count(), 1);
    QVERIFY(luminance(hud.soft()) > luminance(soft));
    QVERIFY(luminance(hud.dim()) > luminance(dim));
    QCOMPARE((QList<QColor>{Hud::bg(), Hud::panel(), Hud::green(), Hud::faint()}), fixed);
}

void ThemeTest::fontIsFixedWidth()
{
    const QFont font = Hud::mono(24, QFont::Bold, 9);
    const QFontMetricsF metrics(font);
    QCOMPARE(metrics.horizontalAdvance(u"iiii"_s), metrics.horizontalAdvance(u"WWWW"_s));
    QCOMPARE(font.pixelSize(), 24);
    QCOMPARE(font.letterSpacing(), 9.0);
}

} // namespace kelo

QTEST_MAIN(kelo::ThemeTest)
#include "theme_test.moc"
