#include "engine_process.h"
#include "support/table.h"

#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using kelo::test::Table;

/// What the engine answers to who asks, types or sets it up.
class AnswersTest : public EngineTest {
    Q_OBJECT

private Q_SLOTS:
    void asksTheFirstQuestionsOnce()
    {
        engine = std::make_unique<EngineProcess>(false);
        engine->start();
        QVERIFY(!engine->waitFor(u"mode idle"_s).isEmpty());
        QCOMPARE(engine->lines.first(), u"@welcome"_s);
        expect("v", {u"voice .+"_s}); // nothing is written before there are answers
        QVERIFY(!QFile::exists(engine->path(u"profile.json"_s)));
        QVERIFY(QFile::exists(engine->path(u"voice-log.txt"_s)));
        expect("~setup Ann|Phoenix|Leeds|F|uses a screen reader|true|03-07|true\n",
            {u"name Phoenix\\|Ann"_s, u"say Welcome, Ann\\. Say Phoenix.*can't install.*"_s});
        QCOMPARE(engine->profile()[u"assistant"_s].toString(), u"Phoenix"_s);
        QCOMPARE(engine->profile()[u"city"_s].toString(), u"Leeds"_s);
        engine->send("\n");
        expect("~ear 1 fenix help\n", {u"heard help"_s});
        QVERIFY(engine->end().isEmpty());
        engine->start();
        QVERIFY(!engine->waitFor(u"name Phoenix\\|Ann"_s).isEmpty());
        QVERIFY(!engine->waitFor(u"say .*Ann.*"_s).isEmpty());
        QVERIFY(!engine->lines.contains(u"@welcome"_s));
    }

    void wishesAHappyBirthday()
    {
        const QDate today = QDate::currentDate();
        engine->write(u"profile.json"_s,
            "{\"user\": \"Ann\", \"birthday\": \"" + today.toString(u"MM-dd"_s).toUtf8() + "\"}");
        engine->start();
        QVERIFY(!engine->waitFor(u"say Happy birthday, Ann!.*"_s).isEmpty());
        QVERIFY(engine->end().isEmpty());
        engine->start(); // and once is enough
        QVERIFY(!engine->waitFor(u"say Good .*, Ann\\..*"_s).isEmpty());
    }

    void hearsItsName()
    {
        start();
        QElapsedTimer timer;
        timer.start();
        expect("~ear 0 kelo what\n~ear 0 kelo what time is it\n",
            {u"heard what time is it"_s, u"earreset"_s, u"say It is \\d\\d:\\d\\d\\."_s});
        QVERIFY(timer.elapsed() >= 700);
        // The assistant's own words, and those on their way when it began to speak.
        engine->send(
            "~ear 0 kelo what time is it\n~ear 1 kelo what time is it\n~ear 0 kelo help\n");
        QVERIFY(engine->waitFor(u"heard .*"_s, 1).isEmpty());
        expect("~speak One two three four five six seven eight nine ten.\n", {u"start"_s});
        expect("~ear 0 kelo help kelo stop\n", {u"heard stop"_s});
        QVERIFY(!engine->waitFor(u"earreset"_s, 1).isEmpty());
        QTest::qWait(200);
        expect("~ear 1 kelo\n", {u"heard"_s, u"say Yes\\?"_s, u"done"_s});
        expect("~ear 1 what day is it\n",
            {u"heard what day is it"_s, u"say It is \\w+day, the .*"_s, u"done"_s});
        engine->send("~ear 1 what day is it\n~ear\n~ear 2 kelo help\n~ear 1kelo help\n");
        QVERIFY(engine->waitFor(u"heard .*"_s, 1).isEmpty());
        engine->send("\n");
        expect("t", {u"mode talk"_s, u"done"_s});
        expect(
            "~ear 1 list the songs\n", {u"heard list the songs"_s, u"say There are 8 songs.*"_s});
    }

    void takesWhatIsTyped()
    {
        start();
        expect("a", {u"typing 1"_s, u"say Type.*"_s});
        expect("what ", {u"say what"_s}); // "a", "h" and "t" are letters now
        expect("x\x7f", {u"say x, deleted"_s});
        engine->send("~ear 1 kelo help\n"); // nobody listens meanwhile
        expect("time is it\n", {u"typing 0"_s, u"heard what time is it"_s, u"say It is .*"_s});
        QVERIFY(!engine->lines.contains(u"@heard help"_s));
        expect("a\n", {u"typing 1"_s, u"typing 0"_s, u"say Typing is over\\."_s});
        expect("aq", {u"typing 1"_s});
        QTest::qWait(50);
        expect("\x1b", {u"typing 0"_s});
        expect("/", {u"say I wrote the command page.*commands\\.html\\."_s});
        QVERIFY(QFile(engine->path(u"commands.html"_s)).size() > 5000);
    }

    void answers_data()
    {
        const Table<QString> row{"line"}; // by what is sent
        row("~say large captions on", u"access large 1"_s);
        row("~say high contrast off", u"access contrast 0"_s);
        row("~say stop listening", u"ears off"_s);
        row("~say full screen", u"window full 1"_s);
        row("~say visualiser off", u"window visual 0"_s);
        row("~say hide the window", u"window show 0"_s);
        row("~say start at login on", u"window login 1"_s);
        row("~login on", u"say I'll start when you log in\\."_s);
        row("~login failed", u"say That could not be changed\\."_s);
        row("~bg", u"say I'll carry on in the background\\."_s);
        row("~say change the voice", u"voice American, fast"_s);
        row("~say louder", u"say Louder\\."_s);
        row("~say what can i say", u"say Say Kelo, and then: song menu.*"_s);
        // What there is none of is said so.
        const QString noMusic = u"say I can't make or change music.*"_s;
        row("~say play my album", u"say There is no album here\\..*"_s);
        row("~say jam with me", u"say I can't answer with music.*press B\\."_s);
        row("~say make it a lullaby", noMusic);
        row("c", noMusic);
        row("~say install the natural voice", u"say I can't install another voice.*"_s);
        row("~say what's the weather", u"say I can't look into the world.*"_s);
        row("j", u"say I don't have a jazz course.*"_s);
        row("g", u"say I can't work other programs.*"_s);
        row("p", u"say I'll play through the piano, as soon as I see one\\."_s);
        row("K", u"say I don't see a piano\\."_s);
        row("~say good morning", u"say Hello\\..*"_s);
        row("~say play the moonlight waltz", u"say I don't know that song\\..*"_s);
        row("~say flurb the wuzzle", u"say I didn't understand that\\..*"_s);
    }

    void answers()
    {
        const QByteArray sent = QTest::currentDataTag();
        start();
        QFETCH(QString, line);
        expect(sent.startsWith('~') ? sent + '\n' : sent, {line});
    }
};

QTEST_GUILESS_MAIN(AnswersTest)
#include "answers_test.moc"
