#include "voice/name/wake_model.h"
#include "voice/name/wake_training.h"
#include "voice/scripted.h"

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
            lines.append(
                training.phrases[i].phrase + u' ' + QString::number(training.phrases[i].count));
        QCOMPARE(lines,
            (QStringList{u"Kelo 2 5000"_s, u"Hey Kelo 2 2500"_s, u"Okay Kelo 2 800"_s,
                u"Kelo 2 what's the weather 400"_s, u"Hey Kelo 2 what's the weather 150"_s,
                u"Kelo 2 tell me 400"_s, u"Hey Kelo 2 tell me 150"_s}));
        QCOMPARE(training.locale, u"en_US"_s);
        QCOMPARE(training.identifier, u"app.kelo.assistant.wake"_s);
        QVERIFY(!training.pronunciation);
        const auto pronunciation = WakeTraining::of(u"KELO"_s).pronunciation;
        QVERIFY(pronunciation);
        QCOMPARE(pronunciation->grapheme, u"KELO"_s);
        QCOMPARE(pronunciation->phonemes, QStringList{u"k e l oU"_s});
    }

    void keepsFilesByLetters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("stem");
        QTest::newRow("plain") << u"Kelo"_s << u"kelo"_s;
        QTest::newRow("digits and spaces") << u"Kelo 2"_s << u"kelo"_s;
        QTest::newRow("no way out of the folder") << u"../Ünï/.."_s << u"ünï"_s;
        QTest::newRow("beyond the basic plane") << u"\U00010400b"_s << u"\U00010428b"_s;
        QTest::newRow("no letters") << u"42"_s << QString();
    }

    void keepsFilesByLetters()
    {
        QFETCH(QString, name);
        QFETCH(QString, stem);
        const auto files = SpeechModelFiles::of(u"/d"_s, name);
        QCOMPARE(files.trainingData, u"/d/"_s + stem + u".bin"_s);
        QCOMPARE(files.languageModel, u"/d/"_s + stem + u"-lm"_s);
        QCOMPARE(files.vocabulary, u"/d/"_s + stem + u"-vocab"_s);
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
        QFile data(f.folder + u"/kelo.bin"_s);
        QVERIFY(data.open(QIODevice::ReadOnly));
        QVERIFY(data.readAll().contains("phrase\t5000\tKelo\n"));

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
        f.recogniser.teachingFails.clear();
        f.model.prepare(u"Kelo"_s, f.then);
        QTRY_COMPARE(f.told, 1);
        f.recogniser.teachingFails = u"no room"_s;
        f.model.prepare(u"Luna"_s, f.then);
        QTRY_VERIFY(!f.model.isBuilding());
        QVERIFY(f.applies(u"Kelo"_s)); // the old one is still good
        QVERIFY(QDir(f.folder).removeRecursively());
        QFile inTheWay(f.folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
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

    void listensAnewOnceTaught()
    {
        VoiceFixture voice;
        voice.recogniser->teachable = true;
        voice->begin();
        QVERIFY(!voice.recogniser->requests.last().taught);
        QTRY_COMPARE(voice.events.last(), u"start 1"_s);
        QCOMPARE(voice.recogniser->requests.last().taught->name, u"Kelo"_s);
        voice.link->handle("name Luna");
        voice->listen(); // no model of an old name
        QVERIFY(!voice.recogniser->requests.last().taught);
        QTRY_COMPARE(voice.events.last(), u"start 3"_s);
        QCOMPARE(voice.recogniser->requests.last().taught->name, u"Luna"_s);
        voice.link->handle("name Aria");
        voice->listen();
        voice->stop();
        QTRY_COMPARE(voice.recogniser->taughtNames.load(), 3);
        QTest::qWait(20);
        QVERIFY(!voice->on);
        QCOMPARE(voice.recogniser->handlers.size(), 5U); // taught while off: nobody listens
    }
};

QTEST_GUILESS_MAIN(WakeModelTest)
#include "wake_model_test.moc"
