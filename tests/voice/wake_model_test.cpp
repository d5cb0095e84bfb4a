#include "support/table.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/wake_model.h"
#include "voice/scripted.h"
#include "voice/wake_lab/wake_lab.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

struct ModelFixture {
    ModelFixture()
    {
        recogniser.teachable = true;
        recogniser.events = &events;
    }
    [[nodiscard]] bool applies(const QString &name) const
    {
        RecognitionRequest request;
        model.apply(request, name);
        return request.taught && request.taught->name == name;
    }

    QTemporaryDir dir;
    QString folder = dir.filePath(u"a/speech-model"_s);
    QStringList events;
    QStringList logged;
    ScriptedRecogniser recogniser;
    int told = 0;
    WakeModel model{&recogniser, folder, [this](const QString &text) { logged.append(text); }};
    std::function<void()> then = [this] { ++told; };
};

/// What is taught about a name, and when.
class WakeModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsPhrases()
    {
        const auto training = WakeTraining::of(u"Kelo 2"_s);
        QCOMPARE(training.phrases.size(), 3 + 2 * 26);
        QStringList lines;
        for (const qsizetype i : {0, 1, 2, 3, 4, 53, 54})
            lines << training.phrases[i].phrase + u' ' + QString::number(training.phrases[i].count);
        QCOMPARE(lines.join(u'|'),
            u"Kelo 2 5000|Hey Kelo 2 2500|Okay Kelo 2 800|Kelo 2 what's the weather 400|"
            "Hey Kelo 2 what's the weather 150|Kelo 2 tell me 400|Hey Kelo 2 tell me 150"_s);
        QCOMPARE(training.locale, u"en_US"_s);
        QCOMPARE(training.identifier, u"app.kelo.assistant.wake"_s);
        QVERIFY(!training.pronunciation);
        const auto pronunciation = WakeTraining::of(u"KELO"_s).pronunciation;
        QVERIFY(pronunciation);
        QCOMPARE(pronunciation->grapheme, u"KELO"_s);
        QCOMPARE(pronunciation->phonemes, QStringList{u"k e l oU"_s});
    }

    void keepsFilesByLetters()
    {
        const auto files = [](const QString &name) {
            const auto all = SpeechModelFiles::of(u"/d"_s, name);
            return QStringList{all.trainingData, all.languageModel, all.vocabulary}.join(u' ');
        };
        checkRows<QString, QString>(files,
            {{"plain", u"Kelo"_s, u"/d/kelo.bin /d/kelo-lm /d/kelo-vocab"_s},
                {"digits and spaces", u"Kelo 2"_s, u"/d/kelo.bin /d/kelo-lm /d/kelo-vocab"_s},
                {"no way out", u"../Ünï/.."_s, u"/d/ünï.bin /d/ünï-lm /d/ünï-vocab"_s},
                {"beyond the basic plane", u"\U00010400"_s,
                    u"/d/\U00010428.bin /d/\U00010428-lm /d/\U00010428-vocab"_s},
                {"no letters", u"42"_s, u"/d/.bin /d/-lm /d/-vocab"_s}});
    }

    void buildsOncePerName()
    {
        ModelFixture f;
        f.model.prepare(u"Kelo"_s, f.then);
        f.model.prepare(u"Kelo"_s, f.then);
        f.model.prepare(u"Luna"_s, f.then); // not while another is built
        QVERIFY(!f.applies(u"Kelo"_s));
        QTRY_COMPARE(f.told, 1);
        QCOMPARE(f.logged, QStringList{u"the recogniser has been taught the name"_s});
        QVERIFY(f.applies(u"Kelo"_s) && !f.applies(u"Luna"_s));
        QVERIFY(readFile(f.folder + u"/kelo.bin"_s).contains("phrase\t5000\tKelo\n"));

        f.model.prepare(u"Kelo"_s, f.then);
        QVERIFY(!f.model.isBuilding());
        f.model.prepare(u"Luna"_s, f.then);
        QVERIFY(f.applies(u"Kelo"_s)); // until the other is ready
        QTRY_COMPARE(f.told, 2);
        QVERIFY(!f.applies(u"Kelo"_s) && f.applies(u"Luna"_s));
        QCOMPARE(f.recogniser.taughtNames.load(), 2);
    }

    void triesAgainAfterFailure()
    {
        ModelFixture f;
        f.recogniser.teachingFails = u"no room"_s;
        f.model.prepare(u"Kelo"_s, f.then);
        QTRY_COMPARE(
            f.logged, QStringList{u"the name could not be taught to the recogniser: no room"_s});
        f.model.prepare(u"Kelo"_s, f.then); // again and again, and told once
        QTRY_COMPARE(f.recogniser.taughtNames.load(), 2);
        QTRY_VERIFY(!f.model.isBuilding());
        QCOMPARE(f.logged.size(), 1);
        f.recogniser.teachingFails.clear();
        f.model.prepare(u"Kelo"_s, f.then);
        QTRY_COMPARE(f.told, 1);
        f.recogniser.teachingFails = u"no room"_s;
        f.model.prepare(u"Luna"_s, f.then);
        QTRY_VERIFY(!f.model.isBuilding());
        QVERIFY(f.applies(u"Kelo"_s)); // the old one is still good
        QVERIFY(QDir(f.folder).removeRecursively());
        writeFile(f.folder, {}); // in the way
        f.model.prepare(u"Aria"_s, f.then);
        QTRY_COMPARE(f.logged.size(), 4);
        QVERIFY(f.logged.last().startsWith(u"the name could not be taught to the recogniser: "_s));
    }

    void doesNothingWhereNothingCanBeTaught()
    {
        ModelFixture f;
        f.recogniser.teachable = false;
        f.model.prepare(u"Kelo"_s, f.then);
        QVERIFY(!f.model.isBuilding() && !QFile::exists(f.folder));
        WakeModel without(nullptr, f.folder, [](const QString &) {});
        without.prepare(u"Kelo"_s, f.then);
        QVERIFY(!without.isBuilding());
    }

    void labReports_data()
    {
        const Table<QString, int, int, QString> row{"teachingFails", "status", "noisy", "end"};
        row("teaching fails", u"no room"_s, 1, 24,
            u"== plain: the request was written correctly in 1 of 72\n"
            "== plain: the name was written correctly in 2 of 72\n"
            "the name could not be taught to the recogniser: no room\n"_s);
        row("whole", {}, 0, 48,
            u"Melody is heard 0 times of 10, and sometimes when nobody said it; a longer name with "
            "sounds that stand out is heard more surely. What was asked for after it was heard 0 "
            "times of 10. How often it is heard when nobody says it, 35 seconds of talk cannot tell.\ndone\n"_s);
    }

    void labReports()
    {
        QFETCH(QString, teachingFails);
        QFETCH(QString, end);
        const QTemporaryDir folder;
        const QString out = folder.filePath(u"report.txt"_s);
        QStringList events;
        const auto recogniser = [&] {
            auto scripted = std::make_unique<ScriptedRecogniser>();
            scripted->events = &events;
            scripted->teachable = true;
            scripted->teachingFails = teachingFails;
            scripted->answers = QStringList(160, u"hey Melanie"_s);
            scripted->answers[0] = u"Hey melody, what's the weather"_s;
            scripted->answers[70] = u"MELODY"_s;
            scripted->answers[150] = u"a melody"_s;
            return scripted;
        };
        QTEST(WakeLab::run(out, u"Melody"_s, false, recogniser()), "status");
        const QString report = QString::fromUtf8(readFile(out));
        QVERIFY2(report.endsWith(end), qPrintable(report.right(300)));
        const QStringList lines = report.split(u'\n');
        QCOMPARE(
            lines[2], u"ok  Hey melody, what's the weather  [gmw/en-US, 140 words a minute]"_s);
        QCOMPARE(lines[1], u"recogniser: scripted"_s);
        QVERIFY(lines[3].startsWith(u"MISS hey Melanie  ["_s));
        QVERIFY(lines[3].endsWith(u"; request lost]"_s));
        QTEST(static_cast<int>(lines.filter(u"noise"_s).size()), "noisy");
        QVERIFY(!lines[49].contains(u"noise"_s) && lines[50].contains(u"noise at 20 dB"_s));
        QCOMPARE(
            WakeLab::run(folder.filePath(u"no/report.txt"_s), u"Melody"_s, false, recogniser()), 1);
        QCOMPARE(WakeLab::run(out, u"Melody"_s, true, nullptr), 1);
    }
};

QTEST_GUILESS_MAIN(WakeModelTest)
#include "wake_model_test.moc"
