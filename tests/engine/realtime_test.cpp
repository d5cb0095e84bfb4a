#include "sound/realtime.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// A broker on a bus of its own.
class Broker : public QDBusVirtualObject {
public:
    bool allows = true;
    QVariantList asked;

    QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == u"Get") {
            const auto most = QVariant::fromValue(QDBusVariant(QVariant(qlonglong{90'000})));
            return bus.send(message.createReply(most));
        }
        asked = message.arguments();
        return bus.send(allows ? message.createReply()
                               : message.createErrorReply(QDBusError::AccessDenied, u"no"_s));
    }
};

} // namespace

/// Sound goes first where the system's broker allows it.
class RealtimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        daemon_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        QVERIFY(daemon_.waitForReadyRead());
        const QByteArray address = daemon_.readLine().trimmed();
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
        auto bus = QDBusConnection::connectToBus(QString::fromUtf8(address), u"broker"_s);
        QVERIFY(bus.registerVirtualObject(u"/org/freedesktop/RealtimeKit1"_s, &broker_));
        QVERIFY(bus.registerService(u"org.freedesktop.RealtimeKit1"_s));
    }

    void asksTheBrokerWithinItsBounds()
    {
        for (const bool allows : {true, false}) {
            broker_.allows = allows;
            std::atomic<int> allowed = -1;
            std::thread asking([&] { allowed = kelo::engine::askBroker(4711) ? 1 : 0; });
            QTRY_VERIFY(allowed != -1);
            asking.join();
            QCOMPARE(allowed.load(), allows ? 1 : 0);
            QCOMPARE(broker_.asked, (QVariantList{qulonglong(getpid()), 4711ULL, 5U}));
        }
        rlimit bound{};
        getrlimit(RLIMIT_RTTIME, &bound);
        QVERIFY2(bound.rlim_max == 90'000 && bound.rlim_cur == 45'000, "or brokers refuse");
    }

    void cleanupTestCase()
    {
        daemon_.kill();
        daemon_.waitForFinished();
    }

private:
    QProcess daemon_;
    Broker broker_;
};

QTEST_GUILESS_MAIN(RealtimeTest)
#include "realtime_test.moc"
