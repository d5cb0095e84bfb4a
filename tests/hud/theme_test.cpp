#include "hud/theme.h"

#include <QFontMetricsF>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

class ThemeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Must run first: the theme reads the setting once.
    void startsAsTheUserLeftIt()
    {
        QSettings().setValue(u"contrast"_s, true);
        QVERIFY(Hud::shared().contrast());
        QSettings().setValue(u"contrast"_s, false);
        QVERIFY(Hud::shared().contrast());
    }

    void fontIsFixedWidth()
    {
        const QFontMetricsF metrics(Hud::mono(24, QFont::Bold, 9));
        QCOMPARE(metrics.horizontalAdvance(u"iiii"_s), metrics.horizontalAdvance(u"WWWW"_s));
    }
};

} // namespace kelo

QTEST_MAIN(kelo::ThemeTest)
#include "theme_test.moc"
