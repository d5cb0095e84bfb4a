#include "support/link_fixture.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

class OutboundTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textReachesTheEngineAsItIs()
    {
        LinkFixture fixture;
        fixture->send(u"~early\n"_s); // no engine yet
        fixture->start();
        fixture->send(u"k"_s);
        fixture->send(u"~speak Größe ♭ 🎹\n"_s);
        fixture->send(u"#unknown"_s);
        fixture->send(u"\n"_s);
        fixture.bring(u"OFFLINE"_s);
        fixture->send(u"~bg\n"_s);
        fixture.bring(u"ONLINE"_s);
        fixture->send(u"~end\n"_s);
        QTRY_VERIFY(fixture.engine.input().endsWith("~end\n"));
        QCOMPARE(fixture.engine.input(), "k~speak Größe ♭ 🎹\n\n~end\n"_ba);
    }

    void localCommandsStayHere()
    {
        LinkFixture fixture;
        fixture->send(u"#large"_s);
        QVERIFY(fixture->large);
        QCOMPARE(fixture.setting(u"large"_s).toBool(), true);
        fixture->send(u"#large"_s);
        QVERIFY(!fixture->large);
        QCOMPARE(fixture.setting(u"large"_s).toBool(), false);
        fixture->send(u"#contrast"_s);
        fixture->send(u"#contrast\n"_s);
        fixture->send(u"#"_s);
        QCOMPARE(fixture.shell.calls, QStringList{u"setHighContrast 1"_s});
        fixture->send(u"#voice"_s);
        fixture->send(u"#voice"_s);
        QCOMPARE(fixture.ears.calls, (QStringList{u"begin"_s, u"stop"_s}));

        fixture->setVoiceInput(nullptr);
        fixture->setShell(nullptr);
        fixture->send(u"#voice"_s);
        fixture->send(u"#contrast"_s);
        fixture->chooseFile();
        QVERIFY(!fixture->contrast);
    }

    void settingsAreStoredAndApplied()
    {
        LinkFixture fixture;
        QStringList order;
        connect(&fixture.link(), &Link::willChange, this, [&] {
            order << u"will %1 %2"_s.arg(fixture->contrast).arg(fixture.shell.calls.size());
        });
        fixture->setAccess(u"contrast"_s, true);
        // The last announcement comes when the theme has been switched.
        QCOMPARE(order, (QStringList{u"will 0 0"_s, u"will 1 1"_s}));
        fixture->setAccess(u"overlay"_s, true);
        QCOMPARE(fixture.setting(u"overlay"_s).toBool(), true);
        QCOMPARE(order.size(), 2);
    }

    void settingsMayBeUnwritableOrFlooded()
    {
        LinkFixture unwritable;
        unwritable.settingsFile = u"/proc/nowhere/settings.ini"_s;
        unwritable.say({"access large 1", "access / 1"});
        QVERIFY(unwritable->large);

        LinkFixture flooded;
        for (int i = 0; i < 1000; ++i)
            flooded->handle("access key" + QByteArray::number(i) + " 1");
        flooded.say({"access key1 0"});
        QVERIFY(QSettings(flooded.settingsFile, QSettings::IniFormat).allKeys().size() < 300);
        QCOMPARE(flooded.setting(u"key1"_s).toBool(), false);
    }

    void filesArePlayed_data()
    {
        const Table<QString, bool> row{"path", "played"};
        row("a file", u"/songs/Für Elise.mid"_s, true);
        row("cancelled", {}, false);
        row("a name that would be a command", u"/songs/a\n~update yes"_s, false);
    }

    void filesArePlayed()
    {
        QFETCH(QString, path);
        QFETCH(bool, played);
        LinkFixture fixture;
        fixture->start();
        fixture.shell.midiFile = path;
        fixture->chooseFile();
        QCOMPARE(fixture->visual.get(), played);
        fixture->playFile(path);
        fixture->send(u"~end\n"_s);
        QTRY_VERIFY(fixture.engine.input().endsWith("~end\n"));
        const QByteArray line = "~play " + path.toUtf8() + '\n';
        QCOMPARE(fixture.engine.input(), (played ? line + line : QByteArray()) + "~end\n");
    }

    void changesAreAnnouncedBeforeAndAfter()
    {
        LinkFixture fixture;
        Link &link = fixture.link();
        fixture.say({"kbd old"});
        QStringList seen;
        connect(
            &link, &Link::willChange, this, [&] { seen << u"will: "_s + link.keyboards.get(); });
        connect(&link, &Link::keyboardsChanged, this,
            [&] { seen << u"did: "_s + link.property("keyboards").toString(); });
        fixture.say({"kbd new", "kbd new"});
        QCOMPARE(seen, (QStringList{u"will: old"_s, u"did: new"_s, u"will: new"_s, u"did: new"_s}));
    }
};

QTEST_GUILESS_MAIN(OutboundTest)
#include "outbound_test.moc"
