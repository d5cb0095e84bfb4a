#include "hud/theme.h"

#include <QFontMetricsF>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

class ThemeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsAsTheUserLeftIt();
    void contrastLightensTextAlone();
    void fontIsFixedWidth();
};

// Must run first: the theme reads the setting once.
void ThemeTest::startsAsTheUserLeftIt()
{
    QSettings().setValue(u"contrast"_s, true);
    QVERIFY(Hud::shared().contrast());
    QSettings().setValue(u"contrast"_s, false);
    QVERIFY(Hud::shared().contrast());
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
    QVERIFY(hud.soft().lightness() > soft.lightness());
    QVERIFY(hud.dim().lightness() > dim.lightness());
    QCOMPARE((QList<QColor>{Hud::bg(), Hud::panel(), Hud::green(), Hud::faint()}), fixed);
}

void ThemeTest::fontIsFixedWidth()
{
    const QFontMetricsF metrics(Hud::mono(24, QFont::Bold, 9));
    QCOMPARE(metrics.horizontalAdvance(u"iiii"_s), metrics.horizontalAdvance(u"WWWW"_s));
}

} // namespace kelo

QTEST_MAIN(kelo::ThemeTest)
#include "theme_test.moc"
