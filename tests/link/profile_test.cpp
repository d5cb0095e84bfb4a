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
    void theLinkBeginsQuietly();
    void directoriesAreTakenAsNamed();
};

void ProfileTest::namesComeFromTheProfile_data()
{
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<QString>("assistant");
    QTest::addColumn<QString>("user");
    const auto row = [](const char *why, const QByteArray &profile,
                         const QString &assistant = u"Kelo"_s, const QString &user = {}) {
        QTest::newRow(why) << profile << assistant << user;
    };
    row("none", {});
    row("both", R"({"assistant": "Aria", "user": "Zoë", "city": {"x": []}})", u"Aria"_s, u"Zoë"_s);
    row("empty strings are strings", R"({"assistant": "", "user": ""})", {});
    row("wrong types", R"({"assistant": 7, "user": ["Ann"]})");
    row("null", R"({"assistant": null, "user": true})");
    row("a list", R"(["assistant", "Aria"])");
    row("not JSON", "assistant: Aria");
    row("cut off", R"({"assistant": "Aria")");
    row("deeply nested", QByteArray(100'000, '['));
}

void ProfileTest::namesComeFromTheProfile()
{
    QFETCH(QByteArray, profile);
    LinkFixture fixture;
    if (!profile.isEmpty())
        fixture.write(u"profile.json"_s, profile);
    QTEST(fixture->assistant.get(), "assistant");
    QTEST(fixture->user.get(), "user");

    fixture.write(u"profile.json"_s, R"({"user": "Eve"})"); // is read anew
    QCOMPARE(savedProfile(fixture.dataDir).value(u"user"_s).toString(), u"Eve"_s);
}

void ProfileTest::theLinkBeginsQuietly()
{
    LinkFixture fixture;
    QSettings(fixture.settingsFile, QSettings::IniFormat).setValue(u"large"_s, true);
    const Link &link = fixture.link();
    QVERIFY(link.large && !link.contrast && !link.rollZero && !link.voiceAnchor);
    QCOMPARE((QStringList{link.state, link.mode, link.bandStyle, link.hands}),
        (QStringList{u"STARTING"_s, u"idle"_s, u"full"_s, u"both"_s}));
    QCOMPARE(link.beat.get(), -1);
    QCOMPARE(link.level, 0.05);
    QCOMPARE(link.bars, Bars{});
    QCOMPARE(Link::barCount, 120);
}

void ProfileTest::directoriesAreTakenAsNamed()
{
    const QTemporaryDir folder;
    QProcessEnvironment environment;
    QVERIFY(dataDirectory(environment).endsWith("/Kelo"_L1));
    QVERIFY(payloadDirectory(environment).endsWith("/payload"_L1));

    const QString wanted = folder.filePath(u"a/b c"_s);
    environment.insert(u"KELO_HOME"_s, wanted);
    QCOMPARE(dataDirectory(environment), wanted);
    QVERIFY(QDir(wanted).exists());
    environment.insert(u"KELO_HOME"_s, u"/proc/nowhere"_s);
    QCOMPARE(dataDirectory(environment), u"/proc/nowhere"_s);

    for (const QString &payload : {u"some/where"_s, QString()}) {
        environment.insert(u"KELO_PAYLOAD"_s, payload);
        QCOMPARE(payloadDirectory(environment), payload);
    }
}

QTEST_GUILESS_MAIN(ProfileTest)
#include "profile_test.moc"
