#include "app/app_delegate.h"
#include "app/arguments.h"
#include "support/link_fixture.h"
#include "voice/voice_control.h"

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
class ShellTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void keysGoToTheEngineOrToTheControls();
    void menuShortcutsNeverReachTheEngine();
    void tellsTheEngineOnceThatItGoesOnInTheBackground();
    void comesBackWhereItWas();
    void followsTheEngineWithItsWindow();
    void startsHiddenWhenAsked();

private:
    void launch(const QStringList &arguments = {});
    [[nodiscard]] QQuickView *window() const { return delegate_->window(); }

    std::unique_ptr<LinkFixture> link_;
    std::unique_ptr<VoiceControl> voice_;
    std::unique_ptr<AppDelegate> delegate_;
};

void ShellTest::initTestCase()
{
    // No tray and no desktop, whatever the machine offers.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
    QCoreApplication::setOrganizationName(u"Kelo"_s);
    QCoreApplication::setApplicationName(u"ShellTest"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void ShellTest::init()
{
    QSettings().clear();
    link_ = std::make_unique<LinkFixture>();
    link_->engine.play("line @mode idle\nserve");
    voice_ = std::make_unique<VoiceControl>();
    delegate_ = std::make_unique<AppDelegate>(link_->link(), *voice_);
}

void ShellTest::cleanup()
{
    link_->link().stop();
    delegate_.reset();
    voice_.reset();
    link_.reset();
}

void ShellTest::launch(const QStringList &arguments)
{
    delegate_->launch(Arguments::read(arguments));
    QTRY_COMPARE(link_->link().state.get(), u"ONLINE"_s);
    if (window()->isVisible())
        QVERIFY(QTest::qWaitForWindowExposed(window()));
}

void ShellTest::keysGoToTheEngineOrToTheControls()
{
    launch();
    Link &link = link_->link();
    QTest::keyClick(window(), Qt::Key_H);
    QTest::keyClick(window(), Qt::Key_Tab);
    QVERIFY(link.tabbing);
    QQuickItem *control = window()->activeFocusItem();
    QVERIFY(control && control->activeFocusOnTab());

    QTest::keyClick(window(), Qt::Key_Escape);
    QVERIFY(!link.tabbing);
    QVERIFY(window()->activeFocusItem() != control);
    QTest::keyClick(window(), Qt::Key_Space);
    QTest::keyClick(window(), Qt::Key_F);
    QVERIFY(link.visual);
    QTest::keyClick(window(), Qt::Key_Escape);
    QVERIFY(!link.visual);
    QTest::keyClick(window(), Qt::Key_Backspace);
    QTRY_COMPARE(link_->engine.input(), QByteArray("h \x7f"));
}

void ShellTest::menuShortcutsNeverReachTheEngine()
{
    launch();
    QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(!window()->isVisible());
    delegate_->showWindow();
    QTest::keyClick(window(), Qt::Key_N);
    QTRY_COMPARE(link_->engine.input(), "~bg\n" + stillHere + "n");
}

void ShellTest::tellsTheEngineOnceThatItGoesOnInTheBackground()
{
    launch();
    for (int i = 0; i < 2; ++i) {
        QVERIFY(window()->close());
        QVERIFY(delegate_->mainWindowHidden());
        delegate_->showWindow();
        QVERIFY(!delegate_->mainWindowHidden());
    }
    link_->link().send(u"~done\n"_s);
    QTRY_COMPARE(link_->engine.input(), "~bg\n" + stillHere + "~done\n");
}

void ShellTest::comesBackWhereItWas()
{
    launch();
    QCOMPARE(window()->size(), QSize(1240, 840));
    const QRect moved(40, 60, 1000, 700);
    window()->setGeometry(moved);
    QTRY_COMPARE(window()->geometry(), moved);
    QVERIFY(window()->close());

    link_->link().stop();
    delegate_ = std::make_unique<AppDelegate>(link_->link(), *voice_);
    launch();
    QTRY_COMPARE(window()->geometry(), moved);
}

void ShellTest::followsTheEngineWithItsWindow()
{
    launch({u"--hidden"_s});
    link_->say({"window visual 1"});
    QVERIFY(window()->isVisible());
    QVERIFY(link_->link().visual);
    link_->say({"window show 0"});
    QVERIFY(!window()->isVisible());
    link_->say({"window show 0", "window login 1", "window login 0"});
    QTRY_COMPARE(link_->engine.input(), QByteArray("~login on\n~login off\n"));
    link_->say({"welcome"});
    QVERIFY(window()->isVisible());
}

void ShellTest::startsHiddenWhenAsked()
{
    launch({u"--hidden"_s});
    QVERIFY(!window()->isVisible());
    QVERIFY(delegate_->mainWindowHidden());
}

QTEST_MAIN(ShellTest)
#include "shell_test.moc"
