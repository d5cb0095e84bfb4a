#include "engine_process.h"

#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// An evening with the engine, seen from the display and from the piano.
class PracticeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { engine = std::make_unique<EngineProcess>(); }
    void cleanup();
    void asksTheFirstQuestionsOnce();
    void wishesAHappyBirthday();
    void hearsItsName();
    void goesThroughTheSongs();
    void teachesAPart();
    void trainsTheEar();
    void thePianoComesAndGoes();
    void theTopKeysGiveCommands();
    void keepsWhatWasPlayed();
    void keepsTime();
    void takesWhatIsTyped();
    void worksItsDisplay_data();
    void worksItsDisplay();
    void answersHonestly_data();
    void answersHonestly();

private:
    void start(bool withPiano = false)
    {
        if (withPiano)
            engine->plugIn();
        engine->start();
        QVERIFY(!engine->waitFor(u"say .*"_s).isEmpty());
        engine->send("\n"); // enough of the greeting
    }
    /// Sends, and expects each of these lines in this order.
    void expect(const QByteArray &bytes, const QStringList &patterns)
    {
        engine->send(bytes);
        for (const QString &pattern : patterns)
            QVERIFY2(!engine->waitFor(pattern).isEmpty(), qPrintable(pattern));
    }
    QJsonObject profile() const
    {
        QFile file(engine->path(u"profile.json"_s));
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    }

    std::unique_ptr<EngineProcess> engine;
};

void PracticeTest::cleanup()
{
    const QString fault = engine->end();
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    engine.reset();
}

void PracticeTest::asksTheFirstQuestionsOnce()
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
    QCOMPARE(profile()[u"assistant"_s].toString(), u"Phoenix"_s);
    QCOMPARE(profile()[u"city"_s].toString(), u"Leeds"_s);
    engine->send("\n");
    expect("~ear 1 fenix help\n", {u"heard help"_s});
    QVERIFY(engine->end().isEmpty());
    engine->start();
    QVERIFY(!engine->waitFor(u"name Phoenix\\|Ann"_s).isEmpty());
    QVERIFY(!engine->waitFor(u"say .*Ann.*"_s).isEmpty());
    QVERIFY(!engine->lines.contains(u"@welcome"_s));
}

void PracticeTest::wishesAHappyBirthday()
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

void PracticeTest::hearsItsName()
{
    start();
    QElapsedTimer timer;
    timer.start();
    expect("~ear 0 kelo what\n~ear 0 kelo what time is it\n",
        {u"heard what time is it"_s, u"earreset"_s, u"say It is \\d\\d:\\d\\d\\."_s});
    QVERIFY(timer.elapsed() >= 700);
    // The assistant's own words, and those on their way when it began to speak.
    engine->send("~ear 0 kelo what time is it\n~ear 1 kelo what time is it\n~ear 0 kelo help\n");
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
    expect("~ear 1 list the songs\n", {u"heard list the songs"_s, u"say There are 8 songs.*"_s});
}

void PracticeTest::goesThroughTheSongs()
{
    QVERIFY(QDir(engine->path({})).mkpath(u"Music/Kelo Songs"_s));
    engine->write(u"Music/Kelo Songs/Zebra_song.mid"_s, "no music");
    start();
    expect("m",
        {u"mode menu"_s, u"vocab .*play Minuet in G.*"_s,
            u"say Song menu\\. Song 1 of 9: Au clair de la lune, .*"_s});
    expect("\x1b[D", {u"say Song 9 of 9: Zebra song\\."_s});
    expect(" ", {u"say I can't read that song\\."_s});
    expect("\x1b[C", {u"say Song 1 of 9.*"_s});
    expect("n", {u"say There are 9 songs\\."_s});
    expect("l", {u"say There are 9 songs\\. 1: Au clair.* 9: Zebra song\\."_s});
    expect("\n",
        {u"say Au clair de la lune\\."_s, u"rollnew Au clair de la lune"_s, u"out 60 \\d+"_s});
    expect("-", {u"out 60 0"_s, u"rollstart .*"_s, u"say Tempo 90 percent\\."_s});
    expect("\n", {u"paused 1"_s});
    expect("~ear 1 kelo carry on\n", {u"paused 0"_s});
    expect("0", {u"rollstop"_s, u"mode idle"_s, u"say Home\\."_s});
    QCOMPARE(engine->ask("play song fifty"), u"There is no song 50. There are 9 songs."_s);
    QCOMPARE(engine->ask("kelo, play the prelude in C"), u"Prelude in C."_s);
    QVERIFY(engine->ask("where am i").contains(u"Prelude in C"_s));
    QVERIFY(engine->ask("surprise me").contains(u"can't make music up"_s));
}

void PracticeTest::teachesAPart()
{
    start(true);
    expect("~say teach me twinkle twinkle\n",
        {u"mode teach"_s, u"vocab .*right hand.*"_s, u"say A lesson on Twinkle.*right hand\\."_s});
    expect("n", {u"say Right hand: C, C, G, G\\."_s}); // two bars of it
    expect("\n", {u"out 72 \\d+"_s, u"out 79 \\d+"_s, u"out 79 0"_s, u"out 79 0"_s});
    QTest::qWait(300);
    engine->tap({72, 72, 77});
    QVERIFY(!engine->waitFor(u"on 77 80"_s).isEmpty());
    QVERIFY(!engine->waitFor(u"flash wrong"_s, 1).isEmpty());
    QVERIFY(
        !engine->waitFor(u"say The third note was G, you played F\\. Try again\\."_s, 3).isEmpty());
    engine->send("\n");
    engine->tap({72, 72, 79, 79});
    expect({}, {u"flash good"_s, u"say Good\\..*left hand\\."_s});
    expect("\x1b[C", {u"say Bars one and two, both hands\\."_s});
    expect("~hands\n", {u"say Bars .*, right hand\\."_s, u"hands right"_s});
    expect("~say both hands\n", {u"hands both"_s});
    expect("~drop\n", {u"mode menu"_s});
    QCOMPARE(engine->ask("note names"), u"There is no lesson now."_s);
    // A whole piece, as fast as it can be learnt.
    expect("~say teach me au clair de la lune\n~say left hand\n", {u"hands left"_s});
    for (int part = 0; part < 60; ++part)
        engine->send("\x1b[C");
    QVERIFY(!engine->waitFor(u"say This is the last part\\."_s).isEmpty());
}

void PracticeTest::trainsTheEar()
{
    start(true);
    expect("~ear\n", {u"mode ear"_s, u"say Ear training\\..*"_s});
    engine->send("\n");
    QVERIFY(!engine->waitFor(u"out 60 \\d+"_s).isEmpty());
    const int asked = engine->waitFor(u"out (6[0-9]) [1-9]\\d*"_s).section(u' ', 1, 1).toInt();
    QVERIFY(!engine->waitFor(u"out %1 0"_s.arg(asked)).isEmpty());
    QTest::qWait(300);
    engine->tap({asked});
    expect({}, {u"flash good"_s, u"say Yes, .*"_s});
    expect("0", {u"mode idle"_s, u"say Home\\. You found one of one\\."_s});
}

void PracticeTest::thePianoComesAndGoes()
{
    start();
    engine->plugIn();
    QVERIFY(!engine->waitFor(u"kbd Stage Piano"_s, 3).isEmpty());
    QVERIFY(!engine->waitFor(u"buttons 108 107 105 103 101 100 98 96 95 93"_s).isEmpty());
    engine->play(60);
    QVERIFY(!engine->waitFor(u"on 60 80"_s, 1).isEmpty());
    engine->pullOut();
    QVERIFY(!engine->waitFor(u"kbd"_s, 3).isEmpty());
    QVERIFY(!engine->waitFor(u"buttons"_s).isEmpty());
    QVERIFY(!engine->waitFor(u"on 60 0"_s).isEmpty()); // nobody holds it any more
    engine->plugIn();
    QVERIFY(!engine->waitFor(u"kbd Stage Piano"_s, 3).isEmpty());
}

void PracticeTest::theTopKeysGiveCommands()
{
    start(true);
    engine->tap({98}); // seven: nothing is composed here
    QVERIFY(!engine->waitFor(u"say I can't make music of my own.*"_s).isEmpty());
    engine->tap({105});
    QVERIFY(!engine->waitFor(u"say Ear training\\."_s).isEmpty());
    engine->tap({103, 108});
    QVERIFY(!engine->waitFor(u"mode menu"_s).isEmpty());
    engine->tap({107});
    QVERIFY(!engine->waitFor(u"say There are 8 songs\\."_s).isEmpty());
    engine->tap({95});
    QVERIFY(!engine->waitFor(u"mode idle"_s).isEmpty());
    QVERIFY(engine->lines.filter(u"@on"_s).isEmpty());
    expect("K", {u"say Press the highest key.*"_s});
    engine->tap({84});
    QVERIFY(!engine->waitFor(u"buttons 84 83 81 79 77 76 74 72 71 69"_s).isEmpty());
    engine->tap({84});
    QVERIFY(!engine->waitFor(u"mode menu"_s).isEmpty());
    QCOMPARE(profile()[u"topKey"_s].toInt(), 84);
}

void PracticeTest::keepsWhatWasPlayed()
{
    start(true);
    expect("s", {u"say You haven't played anything yet\\."_s});
    engine->tap({60, 64, 67});
    expect({}, {u"on 67 0"_s});
    expect("s", {u"say I kept it among your songs\\."_s});
    engine->send("s");
    QVERIFY(!engine->waitFor(u"say I kept it.*"_s).isEmpty());
    const QStringList files = QDir(engine->path(u"Music/Kelo Songs"_s)).entryList(QDir::Files);
    QCOMPARE(files.filter(QRegularExpression(u"^Played .*\\.mid$"_s)).size(), 2);
    expect("~say play it back\n", {u"rollnew What you played"_s, u"rolln .*,60,80,0;.*,67,80,0"_s});
}

void PracticeTest::keepsTime()
{
    start(true);
    expect("~say metronome at two hundred\n", {u"say Metronome at 200\\."_s, u"beat 0"_s});
    QElapsedTimer timer;
    timer.start();
    expect({}, {u"beat 1"_s, u"beat 2"_s, u"beat 3"_s, u"beat 0"_s});
    QVERIFY2(std::abs(timer.elapsed() - 1200) < 150, qPrintable(QString::number(timer.elapsed())));
    expect("=", {u"say 204\\."_s});
    expect("~metronome\n", {u"say Metronome off\\."_s});
    QVERIFY(engine->waitFor(u"beat .*"_s, 1).isEmpty());
    expect("b", {u"live 1"_s, u"say The band is ready.*"_s});
    for (const int key : {48, 52, 55})
        engine->play(key);
    expect("~bandstyle\n", {u"bandstyle simple"_s});
    expect("]", {u"bandlevel \\d+%"_s});
    expect("-", {u"say The band at 95\\."_s});
    expect("b", {u"live 0"_s});
}

void PracticeTest::takesWhatIsTyped()
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
    expect("/", {u"say The command page is in my folder.*"_s});
    QVERIFY(QFile(engine->path(u"commands.html"_s)).size() > 5000);
}

void PracticeTest::worksItsDisplay_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *sent, const QString &line) {
        QTest::newRow(sent) << QByteArray(sent) + '\n' << line;
    };
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
}

void PracticeTest::worksItsDisplay()
{
    QFETCH(QByteArray, sent);
    QFETCH(QString, line);
    start();
    expect(sent, {line});
}

void PracticeTest::answersHonestly_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *sent, const QString &answer) {
        QTest::newRow(sent) << QByteArray(sent) << answer;
    };
    const QString noMusic = u"I can't make music of my own.*"_s;
    row("~say play my album\n", noMusic);
    row("~say jam with me\n", noMusic);
    row("~say make it a lullaby\n", noMusic);
    row("c", noMusic);
    row("~say install the natural voice\n", u"I can't install another voice.*"_s);
    row("~say what's the weather\n", u"I can't look into the world.*"_s);
    row("j", u"I don't have a jazz course.*"_s);
    row("g", u"I can't work other programs.*"_s);
    row("p", u"I'll play through the piano, as soon as I see one\\."_s);
    row("K", u"I don't see a piano\\."_s);
    row("~say flurb the wuzzle\n", u"I didn't understand that\\..*"_s);
}

void PracticeTest::answersHonestly()
{
    QFETCH(QByteArray, sent);
    QFETCH(QString, answer);
    start();
    expect(sent, {u"say "_s + answer});
}

QTEST_GUILESS_MAIN(PracticeTest)
#include "practice_test.moc"
