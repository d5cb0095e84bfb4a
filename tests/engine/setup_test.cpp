#include "setup/greeting.h"
#include "setup/profile.h"
#include "setup/progress.h"
#include "setup/sound_queue.h"
#include "setup/voice_log.h"
#include "support/files.h"
#include "support/table.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using namespace kelo::test;

class SetupTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesTheAnswers_data()
    {
        // profile: user, assistant, city, unit, needs, plays, birthday
        const Table<QByteArray, QStringList> row{"line", "profile"};
        row("everything", "Zo\xc3\xab|Melody|Leeds|F|uses a screen reader; plays|true|03-07|false",
            {u"Zo\u00eb"_s, u"Melody"_s, u"Leeds"_s, u"F"_s, u"uses a screen reader; plays"_s,
                u"1"_s, u"03-07"_s});
        row("all skipped", "|Kelo||C||false||false", {{}, u"Kelo"_s, {}, u"C"_s, {}, u"0"_s, {}});
        row("too much", "Ann|Aria|||||02-29|true|x|y",
            {u"Ann"_s, u"Aria"_s, {}, u"C"_s, {}, u"0"_s, u"02-29"_s});
        row("nonsense", "\x01\xff|K 2|a\nb|c|;|TRUE|13-01|1",
            {u"?"_s, u"Kelo"_s, u"a b"_s, u"C"_s, u";"_s, u"0"_s, {}});
        row("a day that no year has", "|Luna|||||02-30|",
            {{}, u"Luna"_s, {}, u"C"_s, {}, u"0"_s, {}});
    }

    void takesTheAnswers()
    {
        QFETCH(QByteArray, line);
        QFETCH(QStringList, profile);
        Profile old;
        old.topKey = 96;
        const Profile made =
            profileFromSetup({line.data(), static_cast<std::size_t>(line.size())}, old);
        QVERIFY(saveProfile(made, path().toStdString()));
        const auto read = loadProfile(path().toStdString());
        QVERIFY(read && *read == made);
        QCOMPARE(read->topKey, 96);
        QCOMPARE(QStringList({QString::fromStdString(read->user),
                     QString::fromStdString(read->assistant), QString::fromStdString(read->city),
                     read->fahrenheit ? u"F"_s : u"C"_s, QString::fromStdString(read->needs),
                     QString::number(read->plays), QString::fromStdString(read->birthday)}),
            profile);
    }

    void keepsWhatIsNotItsOwn()
    {
        writeFile(path(), R"({"assistant": "Aria", "garden": {"roses": [1, 2]}, "user": 5})");
        auto profile = loadProfile(path().toStdString());
        QVERIFY(profile);
        QCOMPARE(profile->assistant, std::string("Aria"));
        QCOMPARE(profile->user, std::string());
        profile->user = "Ann \xff";
        QVERIFY(saveProfile(*profile, path().toStdString()));
        const QJsonObject json = QJsonDocument::fromJson(readFile(path())).object();
        QCOMPARE(json[u"garden"_s][u"roses"_s][1].toInt(), 2);
        QCOMPARE(json[u"assistant"_s].toString(), u"Aria"_s);
        QVERIFY(json[u"user"_s].toString().startsWith(u"Ann"_s));
        QCOMPARE(
            QDir(folder.path()).entryList(QDir::Files), QStringList(u"profile.json"_s)); // no draft
    }

    void beginsWithTheSoundThatWasNeeded_data()
    {
        // needed, one start after the other: what the next begins with
        const Table<QByteArray, QList<double>, double> row{"file", "needed", "next"};
        row("first start", {}, {0.012}, 0);
        row("first start, ran dry", {}, {0.012, 0.018, 0.018}, 0.018);
        row("ran dry again", R"({"queue": 0.02})", {0.02, 0.03}, 0.03);
        row("needed no more", R"({"queue": 0.02})", {0.02, 0.015}, 0.018);
        row("no number", R"({"queue": "0.02"})", {0.012}, 0);
        row("nonsense", "queue", {0.012}, 0);
        row("more than can be", R"({"queue": 1e9})", {0.012, 0.018}, 0.018);
        row("less than nothing", R"({"queue": -1})", {0.012, 0.018}, 0.018);
    }

    void beginsWithTheSoundThatWasNeeded()
    {
        QFETCH(QByteArray, file);
        QFETCH(QList<double>, needed);
        QFETCH(double, next);
        QFile::remove(path());
        if (!file.isEmpty())
            writeFile(path(), file);
        SoundQueue queue(path().toStdString());
        for (const double seconds : needed)
            queue.needed(seconds);
        QCOMPARE(SoundQueue(path().toStdString()).first(), next);
    }

    void survivesAnyFile_data()
    {
        const Table<QByteArray, bool> row{"contents", "read"};
        row("empty", {}, false);
        row("a list", "[1]", false);
        row("cut off", "{\"assistant\": \"Ar", false);
        row("deep", QByteArray(100000, '['), false);
        row("wrong kinds",
            QByteArray(R"({"assistant":1,"topKey":"x","plays":7,"voice":1e300,"birthday":[]})"),
            true);
        row("wild values", QByteArray(R"({"assistant":"A|B\n","topKey":-5,"voiceLoudness":1e9})"),
            true);
    }

    void survivesAnyFile()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, read);
        writeFile(path(), contents);
        const auto profile = loadProfile(path().toStdString());
        QCOMPARE(profile.has_value(), read);
        if (!read)
            return;
        QCOMPARE(profile->assistant, std::string("Kelo"));
        QVERIFY(profile->topKey >= 36 && profile->topKey <= 127);
        QVERIFY(profile->voice < 100 && profile->voiceLoudness <= 200);
        QVERIFY(profile->birthday.empty());
    }

    void keepsEverySettingWithinItsBounds()
    {
        const auto kept = [&](const QJsonObject &file) {
            writeFile(path(), QJsonDocument(file).toJson());
            [&] {
                QVERIFY(saveProfile(*loadProfile(path().toStdString()), path().toStdString()));
            }();
            return QJsonDocument::fromJson(readFile(path())).object();
        };
        QJsonObject usual{{u"keysSound"_s, true}, {u"assistant"_s, u"Kelo"_s}, {u"topKey"_s, 108},
            {u"speechRate"_s, 165}, {u"speechPitch"_s, 50}, {u"voice"_s, 0}, {u"lessonTalk"_s, 0},
            {u"wishedIn"_s, 0}};
        QJsonObject set{
            {u"keysSound"_s, false}, {u"assistant"_s, u"Aria"_s}, {u"birthday"_s, u"12-31"_s}};
        for (const QString &key :
            {u"user"_s, u"city"_s, u"needs"_s, u"birthday"_s, u"soundfont"_s}) {
            usual[key] = QString();
            set[key] = key == u"birthday" ? u"12-31"_s : u"x"_s;
        }
        for (const QString &key :
            {u"fahrenheit"_s, u"plays"_s, u"naturalVoice"_s, u"systemVoice"_s}) {
            usual[key] = false;
            set[key] = true;
        }
        for (const QString &part : {u"voice"_s, u"pieces"_s, u"keys"_s, u"band"_s, u"ticks"_s})
            usual[part + u"Loudness"_s] = 100;
        QCOMPARE(kept({}), usual);
        const QList<std::tuple<QString, int, int>> bounds{{u"topKey"_s, 36, 127},
            {u"voice"_s, 0, 99}, {u"lessonTalk"_s, 0, 2}, {u"speechRate"_s, 120, 400},
            {u"speechPitch"_s, 0, 100}, {u"voiceLoudness"_s, 10, 200},
            {u"piecesLoudness"_s, 10, 200}, {u"keysLoudness"_s, 10, 200},
            {u"bandLoudness"_s, 10, 200}, {u"ticksLoudness"_s, 10, 200},
            {u"wishedIn"_s, -1000000000, 1000000000}};
        QJsonObject low = usual;
        QJsonObject high = usual;
        QJsonObject tooLow{{u"user"_s, u" Bo\n"_s}, {u"assistant"_s, u" Bo"_s}};
        QJsonObject tooHigh{{u"assistant"_s, u"X Y"_s}, {u"birthday"_s, u"04-31"_s}};
        low[u"user"_s] = low[u"assistant"_s] = u"Bo"_s;
        for (const auto &[key, least, most] : bounds) {
            low[key] = least;
            tooLow[key] = double(least) - 1;
            high[key] = most;
            tooHigh[key] = double(most) + 1;
            set[key] = most - 1;
        }
        QCOMPARE(kept(tooLow), low);
        QCOMPARE(kept(tooHigh), high);
        QCOMPARE(kept(set), set);
        for (const QString &day : {u"1-31x"_s, u"01/31"_s, u"0a-31"_s, u"01-3:"_s, u"13-01"_s})
            QCOMPARE(kept({{u"birthday"_s, day}}), usual);
    }

    void progressIsBoundedAndSurvivesAnyFile()
    {
        const std::filesystem::path file = path(u"progress.json"_s).toStdString();
        Progress progress(file);
        for (int i = 0; i < 600; ++i)
            progress.reach("Piece " + std::to_string(i % 510), i + 1);
        progress.forget("Piece 5");
        progress.reach({4, 2});
        const Progress again(file);
        QCOMPARE(again.barOf("Piece 10"), 521); // reached once more
        QCOMPARE(again.barOf("Piece 95"), 1); // longest ago
        QCOMPARE(again.barOf("Piece 5"), 1);
        QVERIFY(again.jazz() == JazzPlace(4, 2));
        for (const QByteArray text :
            {R"({"lessons": 5, "jazz": [1]})", "[1]", R"({"lessons": "x"})",
                R"({"lessons": [{"piece": 5, "bar": -1}, 3, {}], "jazz": {"lesson": 1e300}})"}) {
            writeFile(path(u"progress.json"_s), text);
            QVERIFY(Progress(file).jazz() == JazzPlace());
        }
        QByteArrayList many;
        for (std::size_t i = 0; i <= Progress::mostPieces; ++i)
            many << "{\"bar\": 2, \"piece\": \"P" + QByteArray::number(i) + "\"}";
        writeFile(path(u"progress.json"_s), "{\"lessons\": [" + many.join(',') + "]}");
        QCOMPARE(Progress(file).lastPiece(), std::string("P499"));
    }

    void theVoiceLogBeginsAnewWhenItIsLong()
    {
        for (const int size : {1 << 20, (1 << 20) + 1}) {
            writeFile(path(u"voice-log.txt"_s), QByteArray(size, 'x'));
            prepareVoiceLog(folder.path().toStdString());
            QCOMPARE(readFile(path(u"voice-log.txt"_s)).size(), size == 1 << 20 ? size : 0);
            QCOMPARE(readFile(path(u"voice-log.old.txt"_s)).size(), size == 1 << 20 ? 0 : size);
        }
    }

    void failsWithoutADisk()
    {
        QVERIFY(!saveProfile({}, "/proc/kelo/profile.json"));
        QVERIFY(QDir(folder.path()).mkpath(u"taken/x"_s));
        QVERIFY(!saveProfile({}, path(u"taken"_s).toStdString())); // a folder of that name
        QVERIFY(saveProfile({}, path(u"new/deep/profile.json"_s).toStdString()));
    }

    void greets_data()
    {
        // today: year, month, day, hour
        const Table<QByteArray, QList<int>, QByteArray> row{"birthday", "today", "greeting"};
        row("morning", "03-07", {2025, 7, 3, 8}, "Good morning, Ann.");
        row("afternoon", "", {2025, 7, 3, 12}, "Good afternoon, Ann.");
        row("birthday", "03-07", {2025, 3, 7, 8}, "Happy birthday, Ann!");
        row("wished already", "03-07", {2024, 3, 7, 8}, "Good morning, Ann.");
        row("29 February in a leap year", "02-29", {2028, 2, 28, 8}, "Good morning, Ann.");
        row("on the day", "02-29", {2028, 2, 29, 8}, "Happy birthday, Ann!");
        row("29 February in another", "02-29", {2025, 2, 28, 8}, "Happy birthday, Ann!");
        row("29 February in 2100", "02-29", {2100, 2, 28, 8}, "Happy birthday, Ann!");
    }

    void greets()
    {
        QFETCH(QByteArray, birthday);
        QFETCH(QList<int>, today);
        QFETCH(QByteArray, greeting);
        Profile profile;
        profile.user = "Ann";
        profile.birthday = birthday.toStdString();
        profile.wishedIn = 2024;
        QCOMPARE(greetingFor(profile, std::chrono::year(today[0]) / today[1] / today[2], today[3]),
            greeting.toStdString());
        QVERIFY(greetingFor({}, std::chrono::year(2025) / 1 / 1, 9) == "Good morning.");
    }

private:
    QTemporaryDir folder;
    QString path(const QString &name = u"profile.json"_s) { return folder.filePath(name); }
};

QTEST_APPLESS_MAIN(SetupTest)
#include "setup_test.moc"
