#include "app/app_delegate.h"
#include "app/arguments.h"
#include "app/overlay.h"
#include "app/window_sight.h"
#include "support/items.h"
#include "support/lines.h"
#include "support/link_fixture.h"
#include "voice/voice_control.h"

#include <QProcess>
#include <QQuickItem>
#include <QRasterWindow>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// The caption panel beside a real main window on a real, if bare, desktop.
class OverlayTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
        QCoreApplication::setOrganizationName(u"Kelo"_s);
        QGuiApplication::setQuitOnLastWindowClosed(false);
        windowManager_.start(u"openbox"_s, {u"--sm-disable"_s});
        QVERIFY(windowManager_.waitForStarted());
    }

    void init()
    {
        QSettings().clear();
        link_ = std::make_unique<LinkFixture>();
        voice_ = std::make_unique<VoiceControl>();
        delegate_ = std::make_unique<AppDelegate>(link_->link(), *voice_);
        QVERIFY(delegate_->launch({}));
        QVERIFY(QTest::qWaitForWindowActive(delegate_->window(), 20'000));
    }

    void cleanup()
    {
        link_->link().stop();
        delegate_.reset();
        voice_.reset();
        link_.reset();
    }

    void cleanupTestCase()
    {
        windowManager_.terminate();
        windowManager_.waitForFinished();
    }

    void seesWhatTheUserSees()
    {
        QWindow *window = delegate_->window();
        QCOMPARE(sightOf(nullptr), WindowSight::Missing);
        QTRY_COMPARE(sightOf(window), WindowSight::Seen);

        QRasterWindow other;
        other.setGeometry(window->frameGeometry().adjusted(-20, -20, -300, 20));
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        QTest::qWait(300);
        QCOMPARE(sightOf(window), WindowSight::Seen); // a part of it
        other.showMaximized();
        QTRY_COMPARE(sightOf(window), WindowSight::Unseen);
        window->raise();
        window->requestActivate();
        QTRY_COMPARE(sightOf(window), WindowSight::Seen);
        other.raise();
        other.requestActivate();
        QTRY_COMPARE(sightOf(window), WindowSight::Unseen);
        other.close();
        QTRY_COMPARE(sightOf(window), WindowSight::Seen);

        delegate_->minimiseWindow();
        QTRY_COMPARE(sightOf(window), WindowSight::Unseen);
        delegate_->showWindow();
        QTRY_COMPARE(sightOf(window), WindowSight::Seen);

        QProcess::execute(u"xdotool"_s, {u"set_desktop"_s, u"1"_s});
        QTRY_COMPARE(sightOf(window), WindowSight::Unseen);
        QProcess::execute(u"xdotool"_s, {u"set_desktop"_s, u"0"_s});
        QTRY_COMPARE(sightOf(window), WindowSight::Seen);
        delegate_->closeWindow();
        QCOMPARE(sightOf(window), WindowSight::Unseen);
    }

    void showsWhileTheDisplayIsNotSeen()
    {
        link_->say({"say You can see me.", "done"});
        QTest::qWait(100);
        QVERIFY(!panelShows());

        delegate_->closeWindow();
        link_->say({"heard play me something"});
        QTRY_VERIFY(panelShows());
        delegate_->showWindow();
        QTRY_VERIFY2(!panelShows(), "it goes when the display comes");

        delegate_->closeWindow();
        link_->say({"flash wrong"});
        QTest::qWait(100);
        QVERIFY(!panelShows());
        for (const auto &[line, seconds] :
            {std::pair{"flash good", 9.0}, {"heard two", 9.0}, {"done", 3.5}}) {
            link_->say({"say One.", line});
            QTRY_VERIFY(panelShows());
            link_->say({"done", line});
            link_->time.advance(seconds - 0.1);
            QTest::qWait(600);
            QVERIFY2(panelShows(), line);
            link_->time.advance(0.2);
            QTRY_VERIFY2(!panelShows(), line); // its time is over
        }

        link_->say({"heard one"});
        QTRY_VERIFY(panelShows());
        delegate_->overlay().setEnabled(false);
        QTRY_VERIFY(!panelShows());
        link_->say({"heard two"});
        QTest::qWait(100);
        QVERIFY(!panelShows());
    }

    void standsAtTheBottomOutOfTheWay()
    {
        QTest::keyClick(delegate_->window(), Qt::Key_Plus, Qt::ControlModifier);
        delegate_->closeWindow();
        link_->say({"say Still here."});
        const QWindow *panel = delegate_->overlay().window();
        QVERIFY(panel);
        const auto *content =
            qobject_cast<const QQuickView *>(panel)->rootObject()->childItems().constFirst();
        QList<double> opacities;
        const QObject listener;
        connect(content, &QQuickItem::opacityChanged, &listener,
            [&] { opacities.append(content->opacity()); });
        QTRY_VERIFY(panelShows());
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(panel->size(), QSize(848, 272) * 1.25);
        QTRY_COMPARE(content->opacity(), 1.0);
        QVERIFY2(opacities.constFirst() < 1, "it fades in the first time too");
        link_->say({"heard play me something", "update 2.4.0|Notes.", "now 12:05"});
        QTest::qWait(300);
        QCOMPARE(unlikeLines(itemsIn(*content), QStringLiteral(KEPT_ITEMS) + u"/overlay.txt"_s,
                     "KELO_KEEP_PICTURES"),
            u""_s);
        QCOMPARE(area.bottom() - panel->geometry().bottom(), 26);
        QVERIFY(qAbs(panel->geometry().center().x() - area.center().x()) <= 1);

        // A full-screen window does not cover it, takes the click under it and keeps the focus.
        class Target : public QRasterWindow {
        public:
            int clicks = 0;

        protected:
            void mousePressEvent(QMouseEvent *) override { ++clicks; }
        } target;
        target.showFullScreen();
        QVERIFY(QTest::qWaitForWindowActive(&target));
        const QPoint middle = panel->geometry().center();
        QProcess::execute(u"xdotool"_s,
            {u"mousemove"_s, u"--sync"_s, QString::number(middle.x()), QString::number(middle.y()),
                u"click"_s, u"1"_s});
        QTRY_COMPARE(target.clicks, 1);
        QVERIFY(target.isActive());
        link_->say({"heard and still"});
        const auto shows = [&] {
            const QPixmap seen =
                target.screen()->grabWindow(0, middle.x() - 300, middle.y() - 100, 600, 200);
            return seen.toImage().pixelColor(1, 1) != QColor(Qt::black);
        };
        QTRY_VERIFY2(shows(), "the panel shows over it");
    }

private:
    [[nodiscard]] bool panelShows() const
    {
        const auto *panel = delegate_->overlay().window();
        return panel && panel->isVisible();
    }

    QProcess windowManager_;
    std::unique_ptr<LinkFixture> link_;
    std::unique_ptr<VoiceControl> voice_;
    std::unique_ptr<AppDelegate> delegate_;
};

QTEST_MAIN(OverlayTest)
#include "overlay_test.moc"
