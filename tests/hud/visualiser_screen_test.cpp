#include "console.h"
#include "hud/try_saying.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Console;

/// The visualiser's controls, and the hint at what can be said.
class VisualiserScreenTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void controlsFollowTheRoll()
    {
        Console console;
        console.show({1240, 840});
        QQmlComponent component(console.view.engine());
        component.setData("import QtQuick\nimport Kelo.Hud\n"
                          "VisualiserScreen { scene: Item { objectName: 'scene' } }",
            {});
        const std::unique_ptr<QObject> screen(component.createWithInitialProperties(
            {{u"link"_s, QVariant::fromValue(&console.link.link())},
                {u"voice"_s, QVariant::fromValue(&console.voice)}}));
        QVERIFY2(screen, qPrintable(component.errorString()));
        auto *item = qobject_cast<QQuickItem *>(screen.get());
        for (QQuickItem *old : console.view.rootObject()->childItems())
            old->setVisible(false);
        item->setParentItem(console.view.rootObject());
        item->setSize({1240, 840});
        QVERIFY(screen->findChild<QQuickItem *>(u"scene"_s));

        const auto controls = [&] {
            QStringList names;
            for (QQuickItem *each : console.visibleItems()) {
                if (each->inherits("QQuickAbstractButton"))
                    names << Console::accessibleName(each);
            }
            return names;
        };
        QCOMPARE(controls(), (QStringList{u"PLAY A MIDI FILE  [ O ]"_s, u"BACK  [ F ]"_s}));
        const auto press = [&console](const QString &name) {
            QVERIFY(console.tabTo(name));
            QTest::keyClick(&console.view, Qt::Key_Space);
        };
        press(u"PLAY A MIDI FILE  [ O ]"_s);
        QCOMPARE(console.link.shell.calls.filter(u"choose"_s).size(), 1);

        console.link.start("serve");
        console.link.say({"rollnew A Piece"});
        QCOMPARE(controls(), (QStringList{u"STOP  [ RETURN ]"_s, u"BACK  [ F ]"_s}));
        press(u"STOP  [ RETURN ]"_s);
        QTRY_COMPARE(console.link.engine.input(), "\n"_ba);

        QVERIFY(console.link->visual);
        press(u"BACK  [ F ]"_s);
        QVERIFY(!console.link->visual);
        console.link->stop();
    }

    void theHintNamesTheAssistant()
    {
        TrySayingHint hint;
        hint.setProperty("assistant", u"Luna"_s);
        QVERIFY(hint.text().startsWith(u"PRESS A AND TYPE  “Luna, "_s));
        QVERIFY(!hint.text().contains(u"OR SAY"_s));
        hint.setProperty("voiceOn", true);
        QVERIFY(hint.text().startsWith(u"PRESS A AND TYPE  “"_s));
        QVERIFY(hint.text().contains(u"OR SAY  “Luna, "_s));
    }
};

} // namespace kelo

QTEST_MAIN(kelo::VisualiserScreenTest)
#include "visualiser_screen_test.moc"
