#include "app/arguments.h"
#include "app_fixture.h"

#include <QQuickItem>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

const QByteArray stillHere =
    "~speak I’m still here, without a window. Start me again to bring it back.\n";

} // namespace

/// The real window with real key events over an engine that notes what it is sent.
class ShellTest : public AppFixture {
    Q_OBJECT

private Q_SLOTS:
    void keysGoToTheEngineOrToTheControls()
    {
        launch();
        QTest::keyClick(window(), Qt::Key_H);
        QTest::keyClick(window(), Qt::Key_Tab);
        QQuickItem *control = window()->activeFocusItem();
        QVERIFY(control && control->activeFocusOnTab());

        QTest::keyClick(window(), Qt::Key_Escape);
        QVERIFY(window()->activeFocusItem() != control);
        QTest::keyClick(window(), Qt::Key_Space);
        QTest::keyClick(window(), Qt::Key_F);
        QVERIFY(link().visual);
        QTest::keyClick(window(), Qt::Key_Escape);
        QVERIFY(!link().visual);
        QTest::keyClick(window(), Qt::Key_Backspace);
        QTRY_COMPARE(link_->engine.input(), QByteArray("h \x7f"));
    }

    void menuShortcutsNeverReachTheEngine()
    {
        launch();
        QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!window()->isVisible());
        delegate_->showWindow();
        QTest::keyClick(window(), Qt::Key_N);
        QTRY_COMPARE(link_->engine.input(), "~bg\n" + stillHere + "n");
    }

    void tellsTheEngineOnceThatItGoesOnInTheBackground()
    {
        launch();
        for (int i = 0; i < 2; ++i) {
            QVERIFY(window()->close());
            QVERIFY(delegate_->mainWindowHidden());
            delegate_->showWindow();
            QVERIFY(!delegate_->mainWindowHidden());
        }
        link().send(u"~done\n"_s);
        QTRY_COMPARE(link_->engine.input(), "~bg\n" + stillHere + "~done\n");
    }

    void comesBackWhereItWas()
    {
        launch();
        QCOMPARE(window()->size(), QSize(1240, 840));
        const QRect moved(40, 60, 1000, 700);
        window()->setGeometry(moved);
        QTRY_COMPARE(window()->geometry(), moved);
        QVERIFY(window()->close());

        link().stop();
        delegate_ = std::make_unique<AppDelegate>(link(), *voice_);
        launch();
        QTRY_COMPARE(window()->geometry(), moved);
    }

    void staysHiddenUntilTheEngineAsks()
    {
        launch({u"--hidden"_s});
        QVERIFY(!window()->isVisible());
        QVERIFY(delegate_->mainWindowHidden());
        link_->say({"window visual 1"});
        QVERIFY(window()->isVisible());
        QVERIFY(link().visual);
        link_->say({"window show 0"});
        QVERIFY(!window()->isVisible());
        link_->say({"window show 0", "window login 1", "window login 0"});
        QTRY_COMPARE(link_->engine.input(), QByteArray("~login on\n~login off\n"));
        link_->say({"welcome"});
        QVERIFY(window()->isVisible());
    }

private:
    void launch(const QStringList &arguments = {})
    {
        link_->engine.play("line @mode idle\nserve");
        delegate_->launch(Arguments::read(QStringList{u"kelo"_s} + arguments));
        QTRY_COMPARE(link().state.get(), u"ONLINE"_s);
        if (window()->isVisible())
            QVERIFY(QTest::qWaitForWindowExposed(window()));
    }
};

QTEST_MAIN(ShellTest)
#include "shell_test.moc"
