#include "engine_process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// An evening with the engine, seen from the display and from the piano.
class PracticeTest : public EngineTest {
    Q_OBJECT

private Q_SLOTS:
    void goesThroughTheSongs()
    {
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
        const QString surprise = engine->ask("surprise me");
        QVERIFY2(surprise.contains(u"can't make music up"_s), qPrintable(surprise));
    }

    void teachesAPart()
    {
        start(true);
        expect("~say teach me twinkle twinkle\n",
            {u"mode teach"_s, u"vocab .*right hand.*"_s,
                u"say A lesson on Twinkle.*right hand\\."_s});
        expect("n", {u"say Right hand: C, C, G, G\\."_s}); // two bars of it
        expect("\n", {u"out 72 \\d+"_s, u"out 79 \\d+"_s, u"out 79 0"_s, u"out 79 0"_s});
        QTest::qWait(300);
        engine->tap({72, 72, 77});
        expect({}, {u"on 77 80"_s});
        QVERIFY(!engine->waitFor(u"flash wrong"_s, 1).isEmpty());
        QVERIFY(!engine->waitFor(u"say The third note was G, you played F\\. Try again\\."_s, 3)
                     .isEmpty());
        engine->send("\n");
        engine->tap({72, 72, 79, 79});
        expect({}, {u"flash good"_s, u"say Good\\..*left hand\\."_s});
        expect("\x1b[C", {u"say Bars one and two, both hands\\."_s});
        expect("~hands\n", {u"say Bars .*, right hand\\."_s, u"hands right"_s});
        expect("~say both hands\n", {u"hands both"_s});
        QCOMPARE(engine->ask("where am i"),
            u"You are in a lesson on Twinkle, Twinkle, Little Star. Bars one and two, right hand."_s);
        expect("t", {u"mode talk"_s, u"say Talk mode\\. The lesson is over\\..*"_s});
        expect("~say teach me twinkle twinkle\n", {u"mode teach"_s});
        expect("~drop\n", {u"mode menu"_s});
        QCOMPARE(engine->ask("note names"), u"There is no lesson now."_s);
        // A lesson that is left goes on where it was, one that is dropped begins anew.
        expect("~say teach me ode to joy\n", {u"mode teach"_s});
        expect("\x1b[C\x1b[C\x1b[C", {u"say Bars three and four, right hand\\."_s});
        expect("0", {u"mode idle"_s});
        expect("~say teach me ode to joy\n", {u"say .*where we were\\. Bars three and four.*"_s});
        expect("~drop\n", {u"mode menu"_s});
        expect("~say teach me ode to joy\n", {u"say .*Listen.* Bars one and two.*"_s});
        // A whole piece, as fast as it can be learnt.
        expect("~say teach me au clair de la lune\n~say left hand\n", {u"hands left"_s});
        expect(QByteArray("\x1b[C").repeated(60), {u"say This is the last part\\."_s});
    }

    void trainsTheEar()
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

    void thePianoComesAndGoes()
    {
        start();
        engine->plugIn();
        QVERIFY(!engine->waitFor(u"kbd Stage Piano"_s, 3).isEmpty());
        expect({}, {u"buttons 108 107 105 103 101 100 98 96 95 93"_s});
        engine->play(60);
        QVERIFY(!engine->waitFor(u"on 60 80"_s, 1).isEmpty());
        engine->pullOut();
        QVERIFY(!engine->waitFor(u"kbd"_s, 3).isEmpty());
        expect({}, {u"buttons"_s, u"on 60 0"_s}); // nobody holds it any more
        engine->plugIn();
        QVERIFY(!engine->waitFor(u"kbd Stage Piano"_s, 3).isEmpty());
    }

    void theTopKeysGiveCommands()
    {
        start(true);
        const auto tap = [this](const QList<int> &pitches, const QString &line) {
            engine->tap(pitches);
            expect({}, {line});
        };
        tap({98}, u"say I can't make or change music.*"_s); // seven: nothing is composed here
        tap({105}, u"say Ear training\\."_s);
        tap({103, 108}, u"mode menu"_s);
        tap({107}, u"say There are 8 songs\\."_s);
        tap({95}, u"mode idle"_s);
        QVERIFY(engine->lines.filter(u"@on"_s).isEmpty());
        expect("Kv", {u"say Press the highest key.*"_s, u"voice .*"_s}); // thought better of it
        tap({84}, u"on 84 80"_s);
        expect("K", {u"say Press the highest key.*"_s});
        tap({84}, u"buttons 84 83 81 79 77 76 74 72 71 69"_s);
        tap({84}, u"mode menu"_s);
        QCOMPARE(engine->profile()[u"topKey"_s].toInt(), 84);
    }

    void keepsWhatWasPlayed()
    {
        start(true);
        expect("s", {u"say You haven't played anything yet\\."_s});
        engine->tap({60, 64, 67});
        expect({}, {u"on 67 0"_s});
        expect("s", {u"say I kept it among your songs\\."_s});
        expect("s", {u"say I kept it.*"_s});
        const QStringList files = QDir(engine->path(u"Music/Kelo Songs"_s)).entryList(QDir::Files);
        QCOMPARE(files.filter(QRegularExpression(u"^Played .*\\.mid$"_s)).size(), 2);
        expect("~say play it back\n",
            {u"rollnew What you played"_s, u"rolln .*,60,80,0;.*,67,80,0"_s});
    }

    void keepsTime()
    {
        start(true);
        expect("~say metronome at two hundred\n", {u"say Metronome at 200\\."_s, u"beat 0"_s});
        QElapsedTimer timer;
        timer.start();
        expect({}, {u"beat 1"_s, u"beat 2"_s, u"beat 3"_s, u"beat 0"_s});
        QVERIFY2(
            std::abs(timer.elapsed() - 1200) < 150, qPrintable(QString::number(timer.elapsed())));
        expect("=", {u"say 204\\."_s});
        expect("~metronome\n", {u"say Metronome off\\."_s});
        QVERIFY(engine->waitFor(u"beat .*"_s, 1).isEmpty());
        expect("b", {u"live 1"_s, u"say The band is ready.*"_s});
        for (const int key : {48, 52, 55})
            engine->play(key);
        expect("~bandstyle\n", {u"bandstyle simple"_s});
        expect("]", {u"bandlevel \\d+%"_s});
        expect("-", {u"say The band at 95\\."_s});
        expect("\n", {u"live 0"_s, u"say The band is off\\."_s});
    }
};

QTEST_GUILESS_MAIN(PracticeTest)
#include "practice_test.moc"
