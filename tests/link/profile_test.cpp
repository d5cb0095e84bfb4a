#include "link/paths.h"
#include "support/link_fixture.h"
#include "support/table.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

class ProfileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesComeFromTheProfile()
    {
        const auto names = [](const QByteArray &profile) {
            LinkFixture fixture;
            if (!profile.isEmpty())
                fixture.write(u"profile.json"_s, profile);
            const QString found = fixture->assistant.get() + u'|' + fixture->user.get();
            fixture.write(u"profile.json"_s, R"({"user": "Eve"})"); // is read anew
            return found + u'|' + savedProfile(fixture.dataDir).value(u"user"_s).toString();
        };
        checkRows<QByteArray, QString>(names,
            {{"both", R"({"assistant": "Aria", "user": "Zoë", "city": {"x": []}})",
                 u"Aria|Zoë|Eve"_s},
                {"empty strings", R"({"assistant": "", "user": ""})", u"||Eve"_s},
                {"none", {}, u"Kelo||Eve"_s},
                {"wrong types", R"({"assistant": 7, "user": ["Ann"]})", u"Kelo||Eve"_s},
                {"a list", R"(["assistant", "Aria"])", u"Kelo||Eve"_s},
                {"cut off", R"({"assistant": "Aria")", u"Kelo||Eve"_s},
                {"deeply nested", QByteArray(100'000, '['), u"Kelo||Eve"_s}});
    }

    void theDisplayIsAsTheUserLeftIt()
    {
        LinkFixture fixture;
        QSettings(fixture.settingsFile, QSettings::IniFormat).setValue(u"large"_s, true);
        QVERIFY(fixture->large && !fixture->contrast);
    }

    void directoriesAreTakenAsNamed()
    {
        const QTemporaryDir folder;
        QProcessEnvironment environment;
        QVERIFY(dataDirectory(environment).endsWith("/Kelo"_L1));
        QVERIFY(payloadDirectory(environment).endsWith("/payload"_L1));

        const QString wanted = folder.filePath(u"a/b c"_s);
        environment.insert(u"KELO_HOME"_s, wanted);
        QCOMPARE(dataDirectory(environment), wanted);
        QVERIFY(QDir(wanted).exists());
        // Relative, it is ours to resolve: the engine runs elsewhere.
        QVERIFY(QDir::setCurrent(folder.path()));
        environment.insert(u"KELO_HOME"_s, u"a/b c"_s);
        QCOMPARE(dataDirectory(environment), wanted);
        environment.insert(u"KELO_HOME"_s, u"/proc/nowhere"_s);
        QCOMPARE(dataDirectory(environment), u"/proc/nowhere"_s);

        environment.insert(u"KELO_HOME"_s,
            QString::fromUtf8("/tmp/\xff"
                              "a"));
        QVERIFY(dataDirectory(environment).endsWith("/Kelo"_L1));

        qputenv("XDG_DATA_HOME", "/proc");
        environment.remove(u"KELO_HOME"_s);
        QCOMPARE(dataDirectory(environment), u"/proc/Kelo"_s);
        environment.insert(u"XDG_RUNTIME_DIR"_s, folder.path());
        QCOMPARE(dataDirectory(environment), folder.filePath(u"Kelo"_s));
        QVERIFY(QDir(folder.filePath(u"Kelo"_s)).exists());

        for (const QString &payload : {u"some/where"_s, QString()}) {
            environment.insert(u"KELO_PAYLOAD"_s, payload);
            QCOMPARE(payloadDirectory(environment), payload);
        }
    }
};

QTEST_GUILESS_MAIN(ProfileTest)
#include "profile_test.moc"
