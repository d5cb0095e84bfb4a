#include "app/arguments.h"
#include "app_fixture.h"
#include "hud/theme.h"
#include "support/table.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusVariant>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// The desktop's settings portal as far as anyone asks it for contrast.
class Portal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    QVariant answer; // none is an error
    int asked = 0;

public Q_SLOTS:
    QDBusVariant Read(const QString &space, const QString &key)
    {
        ++asked;
        if (!answer.isValid() || space != u"org.freedesktop.appearance"_s || key != u"contrast"_s)
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
        return QDBusVariant(answer);
    }
};

/// The display follows the desktop's wish for contrast until the user has one of their own.
class DesktopContrastTest : public AppFixture {
    Q_OBJECT

private Q_SLOTS:
    void followsTheDesktop_data()
    {
        const auto within = [](uint number) {
            return QVariant::fromValue(QDBusVariant(QVariant(number)));
        };
        // users: what the user has set
        const Table<QVariant, QVariant, bool> row{"answer", "users", "contrast"};
        row("more", within(1), QVariant(), true);
        row("more, in one variant", QVariant(1U), QVariant(), true);
        row("no preference", within(0), QVariant(), false);
        row("something newer", within(2), QVariant(), false);
        row("not a number", QVariant(u"very"_s), QVariant(), false);
        row("unknown there", QVariant(), QVariant(), false);
        row("more, but the user said no", within(1), QVariant(false), false);
    }

    void followsTheDesktop()
    {
        QFETCH(const QVariant, answer);
        QFETCH(const QVariant, users);
        portal_.answer = answer;
        portal_.asked = 0;
        if (users.isValid())
            QSettings().setValue(u"contrast"_s, users);
        Hud::shared().setContrast(false);
        link_->engine.play("line @mode teach\nserve");
        delegate_->launch(Arguments::read({u"kelo"_s, u"--hidden"_s}));
        QTRY_COMPARE(link().mode.get(), u"teach"_s);
        QTRY_COMPARE(portal_.asked, users.isValid() ? 0 : 1);
        QTest::qWait(50); // for the answer
        QTEST(link().contrast.get(), "contrast");
        QTEST(Hud::shared().contrast(), "contrast");
        QVERIFY2(QSettings().value(u"contrast"_s) == users, "the user has not been asked");
    }

    void cleanupTestCase()
    {
        bus_.terminate();
        bus_.waitForFinished();
    }

private:
    void initTestCase()
    {
        AppFixture::initTestCase();
        bus_.start(u"dbus-daemon"_s,
            {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s});
        QVERIFY(bus_.waitForReadyRead());
        const QByteArray address = bus_.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        auto desktop = QDBusConnection::connectToBus(QString::fromUtf8(address), u"desktop"_s);
        QVERIFY(desktop.registerObject(
            u"/org/freedesktop/portal/desktop"_s, &portal_, QDBusConnection::ExportAllSlots));
        QVERIFY(desktop.registerService(u"org.freedesktop.portal.Desktop"_s));
    }

    QProcess bus_;
    Portal portal_;
};

QTEST_MAIN(DesktopContrastTest)
#include "desktop_contrast_test.moc"
