#include "link/paths.h"
#include "support/link_fixture.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::LinkFixture;

class ProfileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesComeFromTheProfile_data();
    void namesComeFromTheProfile();
    void initialState();
    void storedSettingsAreTakenUp();
    void theDataDirectoryIsMade();
    void thePayloadIsTakenAsNamed();
};

void ProfileTest::namesComeFromTheProfile_data()
{
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<QString>("assistant");
    QTest::addColumn<QString>("user");
    const auto row = [](const char *why, const QByteArray &profile, const QString &assistant,
                         const QString &user) {
        QTest::newRow(why) << profile << assistant << user;
    };
    row("none", {}, u"Kelo"_s, {});
    row("both", R"({"assistant": "Aria", "user": "Zoë", "city": {"x": []}})", u"Aria"_s, u"Zoë"_s);
    row("empty strings are strings", R"({"assistant": "", "user": ""})", {}, {});
    row("wrong types", R"({"assistant": 7, "user": ["Ann"]})", u"Kelo"_s, {});
    row("null", R"({"assistant": null, "user": true})", u"Kelo"_s, {});
    row("a list", R"(["assistant", "Aria"])", u"Kelo"_s, {});
    row("not JSON", "assistant: Aria", u"Kelo"_s, {});
    row("cut off", R"({"assistant": "Aria")", u"Kelo"_s, {});
    row("binary", QByteArray("\0\xff{}", 4), u"Kelo"_s, {});
    row("deeply nested", QByteArray(100'000, '['), u"Kelo"_s, {});
}

void ProfileTest::namesComeFromTheProfile()
{
    QFETCH(QByteArray, profile);
    LinkFixture fixture;
    if (!profile.isEmpty())
        fixture.write(u"profile.json"_s, profile);
    QTEST(fixture->assistant.get(), "assistant");
    QTEST(fixture->user.get(), "user");

    fixture.write(u"profile.json"_s, R"({"user": "Eve"})");
    QCOMPARE(savedProfile(fixture.dataDir).value(u"user"_s).toString(), u"Eve"_s);
}

void ProfileTest::initialState()
{
    LinkFixture fixture;
    const Link &link = fixture.link();
    QCOMPARE(link.state.get(), u"STARTING"_s);
    QCOMPARE(link.mode.get(), u"idle"_s);
    QCOMPARE(link.bandStyle.get(), u"full"_s);
    QCOMPARE(link.hands.get(), u"both"_s);
    QCOMPARE(link.beat.get(), -1);
    QCOMPARE(link.level, 0.05);
    QCOMPARE(link.bars, Bars{});
    QCOMPARE(Link::barCount, 120);
    QVERIFY(!link.large && !link.contrast && !link.rollZero && !link.voiceAnchor);
}

void ProfileTest::storedSettingsAreTakenUp()
{
    LinkFixture fixture;
    QSettings(fixture.settingsFile, QSettings::IniFormat).setValue(u"large"_s, true);
    QVERIFY(fixture->large);
    QVERIFY(!fixture->contrast);
}

void ProfileTest::theDataDirectoryIsMade()
{
    const QTemporaryDir folder;
    QProcessEnvironment environment;
    const QString wanted = folder.filePath(u"a/b c"_s);
    environment.insert(u"KELO_HOME"_s, wanted);
    QCOMPARE(dataDirectory(environment), wanted);
    QVERIFY(QDir(wanted).exists());

    QFile file(folder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    environment.insert(u"KELO_HOME"_s, file.fileName() + "/below"_L1);
    QCOMPARE(dataDirectory(environment), file.fileName() + "/below"_L1);

    environment.remove(u"KELO_HOME"_s);
    QVERIFY(dataDirectory(environment).endsWith("/Kelo"_L1));
}

void ProfileTest::thePayloadIsTakenAsNamed()
{
    QProcessEnvironment environment;
    QVERIFY(payloadDirectory(environment).endsWith("/payload"_L1));
    environment.insert(u"KELO_PAYLOAD"_s, u"some/where"_s);
    QCOMPARE(payloadDirectory(environment), u"some/where"_s);
    environment.insert(u"KELO_PAYLOAD"_s, QString());
    QCOMPARE(payloadDirectory(environment), QString());
}

QTEST_GUILESS_MAIN(ProfileTest)
#include "profile_test.moc"
