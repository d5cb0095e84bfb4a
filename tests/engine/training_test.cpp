#include "stage.h"
#include "sums.h"
#include "support/table.h"
#include "theory/harmony.h"
#include "training/band.h"
#include "training/chord_trainer.h"
#include "training/ear_trainer.h"
#include "training/echo_game.h"
#include "training/metronome.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

/// Presses on a channel: "pitch@seconds".
QStringList presses(const Recording &sound, int channel, double from = 0)
{
    QStringList all;
    for (const auto &[frame, message] : sound.played) {
        if (message.status == (0x90 | channel) && seconds(frame) >= from)
            all << u"%1@%2"_s.arg(message.first).arg(seconds(frame), 0, 'f', 2);
    }
    return all;
}

} // namespace

class TrainingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMetronomeIsSteady()
    {
        Stage<Metronome> stage;
        stage.player.start(137, 3, 0);
        stage.runTo(300);
        const auto &played = stage.sound.played;
        QVERIFY(std::abs(static_cast<int>(played.size()) - 300 * 137 / 60) <= 1);
        for (std::size_t beat = 0; beat < played.size(); ++beat) {
            const double should = static_cast<double>(beat) * 60 / 137;
            QVERIFY(std::abs(seconds(played[beat].frame - played[0].frame) - should) < 0.0001);
            QCOMPARE(static_cast<int>(played[beat].message.first), beat % 3 == 0 ? 76 : 77);
        }
        for (qsizetype i = 0; i < stage.lines.size(); ++i) {
            QCOMPARE(stage.lines[i], u"@beat %1"_s.arg(i % 3));
            const double heard = seconds(played[static_cast<std::size_t>(i)].frame);
            QVERIFY(std::abs(stage.times[static_cast<std::size_t>(i)] - heard) < 0.002);
        }
        stage.player.stop();
        QVERIFY(!stage.player.deadline());
        QCOMPARE(stage.sound.silenced, 1);
    }

    void theMetronomeChangesItsTempo()
    {
        Stage<Metronome> stage;
        stage.player.start(60, 4, 0);
        stage.runTo(2.5); // beats at 0.1, 1.1 and 2.1
        stage.player.start(120, 4, 2.5);
        stage.runTo(4.7);
        QCOMPARE(presses(stage.sound, 9),
            QStringList({u"76@0.10"_s, u"77@1.10"_s, u"77@2.10"_s, u"77@2.60"_s, u"76@3.10"_s,
                u"77@3.60"_s, u"77@4.10"_s, u"77@4.60"_s}));
        QCOMPARE(stage.lines.size(), 8);
        stage.player.start(5000, 0, 4.7);
        QCOMPARE(stage.player.tempo(), Metronome::fastest);
        stage.runTo(5);
        stage.player.start(-1, 4, 5);
        QCOMPARE(stage.player.tempo(), Metronome::slowest);
        stage.runTo(20);
    }

    void theMetronomeDividesItsBeats()
    {
        Stage<Metronome> stage;
        stage.player.divide(3, 0);
        stage.player.start(60, 2, 0);
        stage.runTo(2);
        stage.player.divide(2, 2);
        stage.player.setAccent(false);
        stage.runTo(4);
        QCOMPARE(presses(stage.sound, 9).join(u' '),
            u"76@0.10 42@0.43 42@0.77 77@1.10 42@1.43 42@1.77 76@2.10 42@2.60 77@3.10 42@3.60 "
            "77@4.10"_s);
        QCOMPARE(
            stage.lines, QStringList({u"@beat 0"_s, u"@beat 1"_s, u"@beat 0"_s, u"@beat 1"_s}));
        stage.player.countIn(60, 2, 4);
        stage.runTo(8);
        QCOMPARE(presses(stage.sound, 9, 4.15), QStringList({u"77@4.20"_s, u"77@5.20"_s}));
    }

    void theMetronomeSleepsWithTheMachine()
    {
        Stage<Metronome> stage;
        stage.player.start(120, 4, 0);
        stage.runTo(1);
        stage.player.advance(1000);
        QVERIFY(stage.lines.size() < 5);
        QVERIFY(stage.sound.played.size() < 6);
        QVERIFY(*stage.player.deadline() > 1000);
    }

    void theMetronomeTicksAsEver()
    {
        QList<int> sums;
        for (unsigned seed = 0; seed < 6; ++seed) {
            Stage<Metronome> stage;
            Chance chance(seed);
            for (int i = 0; i < 40; ++i) {
                const int tempo = chance.of(QList{30, 60, 97, 137, 240, 300});
                const int beats = chance.below(9);
                chance.of(QList<std::function<void()>>{
                    [&] { stage.player.start(tempo, beats, stage.now); },
                    [&] { stage.player.start(tempo, beats, stage.now, stage.now + 0.3); },
                    [&] { stage.player.divide(chance.below(6), stage.now); },
                    [&] { stage.player.countIn(tempo, beats, stage.now); },
                    [&] { stage.player.setAccent(chance.oneIn(2)); },
                    [&] { stage.player.advance(stage.now += 0.1 * chance.below(6)); },
                    [&] { chance.oneIn(4) ? stage.player.stop() : void(); }})();
                stage.runTo(stage.now + 0.17 * chance.below(20));
            }
            sums << stage.sum();
        }
        QCOMPARE(unlikeKept(u"metronome"_s, sums), QString());
    }

    void theEarTrainerAsksAsEver()
    {
        QByteArray all;
        for (unsigned seed = 0; seed < 8; ++seed) {
            EarTrainer trainer(seed);
            Chance chance(seed);
            const auto tell = [&](const Reply &reply) {
                all += reply.words.c_str() + QByteArray(reply.demo ? " demo " : " ");
                all += reply.good ? (*reply.good ? '+' : '-') : ' ';
            };
            tell(trainer.begin());
            const int mostly = 2 + int(seed) * 2; // right
            for (int i = 0; i < 120; ++i) {
                for (const Note &note : trainer.demo().notes)
                    all += QByteArray::number(note.at) + '/' + QByteArray::number(note.duration)
                        + '/' + QByteArray::number(note.pitch) + ' ';
                all += trainer.tally().c_str() + QByteArray::number(trainer.level());
                trainer.listen();
                const bool right = !chance.oneIn(mostly);
                for (const int note : trainer.asked())
                    tell(trainer.press(note + (right ? 0 : chance.of(QList{-2, 1, 3, 12}))));
                if (chance.oneIn(15))
                    tell(trainer.skip());
            }
        }
        QCOMPARE(unlikeKept(u"ear trainer"_s, {qChecksum(all)}), QString());
    }

    void theEarTrainerFollowsItsPupil()
    {
        EarTrainer trainer(7);
        QVERIFY(trainer.begin().demo);
        QVERIFY(trainer.press(trainer.asked()[0]).words.empty()); // it has not been played yet
        std::set<int> asked;
        int tallies = 0;
        for (int round = 0; round < 60; ++round) {
            const auto notes = trainer.asked();
            QCOMPARE(static_cast<int>(notes.size()), trainer.level() < 3 ? 1 : 2);
            asked.insert(notes.begin(), notes.end());
            trainer.listen();
            Reply reply;
            for (const int note : notes)
                reply = trainer.press(note - 12); // another octave will do
            QVERIFY(reply.good && *reply.good && reply.demo);
            QVERIFY(trainer.asked() != notes);
            tallies += reply.words.find("You found") != std::string::npos;
        }
        QCOMPARE(trainer.level(), 4);
        QVERIFY(asked.size() > 10); // by now every key has been asked
        QCOMPARE(tallies, 12);
        QCOMPARE(trainer.tally(), std::string("You found sixty of sixty."));
        for (int round = 0; round < 8; ++round)
            static_cast<void>(trainer.skip());
        QCOMPARE(trainer.level(), 0);
    }

    void theEchoGrows()
    {
        EchoGame game(3);
        QVERIFY(game.begin().demo);
        const auto play = [&](int octaves, int slip) {
            game.listen();
            Reply reply;
            const std::vector<int> melody = game.melody();
            for (std::size_t i = 0; i < melody.size() && !reply.good; ++i)
                reply = game.press(melody[i] + 12 * octaves + (i == 1 ? slip : 0));
            return reply;
        };
        QVERIFY(!game.press(60).good); // nobody waits for it yet
        for (std::size_t notes = EchoGame::shortest; notes < EchoGame::longest; ++notes) {
            QCOMPARE(game.melody().size(), notes);
            QCOMPARE(game.demo().notes.size(), notes);
            QVERIFY(*play(int(notes) % 3 - 1, 0).good);
        }
        QCOMPARE(QString::fromStdString(game.tally()), u"The longest was fifteen notes."_s);
        QVERIFY(!*play(0, 1).good);
        QCOMPARE(game.melody().size(), EchoGame::longest); // once more
        QVERIFY(!*play(0, 12).good);
        QCOMPARE(game.melody().size(), EchoGame::longest - 2);
    }

    void theChordTrainerNamesWhatWasFound()
    {
        for (const auto first : {ChordTrainer::First::Intervals, ChordTrainer::First::Chords}) {
            QByteArray all;
            Chance chance(5);
            ChordTrainer trainer(9, first);
            all += trainer.begin().words;
            for (int i = 0; i < 160; ++i) {
                trainer.listen();
                const std::vector<int> notes = trainer.asked();
                all += everythingOf(trainer.demo());
                const auto way = chance.below(i < 90 ? 60 : 6);
                if (way == 0) {
                    all += trainer.skip().words + trainer.tally();
                    continue;
                }
                if (way == 1)
                    trainer.tell();
                for (std::size_t n = notes.size(); n-- > 0;) {
                    // Other octaves are as good, but for the lowest note; a wrong key is wrong.
                    const int off = way == 2 ? 1 : way == 3 && n == 0 ? 24 : n > 0 ? 12 : 0;
                    const Reply reply = trainer.press(notes[n] + off);
                    all += QByteArray(reply.good ? *reply.good ? "+" : "-" : ".")
                        + reply.words.c_str();
                    if (reply.good)
                        break;
                }
            }
            const bool chords = first == ChordTrainer::First::Chords;
            QVERIFY(all.contains(chords ? "Yes, minor seventh: " : "Yes, a fifth: "));
            QVERIFY(all.contains("Now chords with sevenths."));
            QCOMPARE(
                unlikeKept(chords ? u"chords by ear"_s : u"intervals by ear"_s, {qChecksum(all)}),
                QString());
        }
        QCOMPARE(intervalName(-19), std::string("an octave and a fifth"));
    }

    void theEarTrainerExplains()
    {
        EarTrainer trainer(1);
        static_cast<void>(trainer.begin());
        QCOMPARE(trainer.tally(), std::string("Nothing found yet."));
        const int note = trainer.asked()[0];
        const std::string name = trainer.answer();
        QCOMPARE(trainer.demo().notes.size(), 2U); // middle C, then the note
        QCOMPARE(trainer.demo().notes[1].pitch, note);
        trainer.listen();
        const Reply low = trainer.press(note + 1);
        QVERIFY(!*low.good && low.demo && trainer.asked()[0] == note);
        QCOMPARE(low.words, std::string("It is lower."));
        QVERIFY(!trainer.press(note).good); // it plays again first
        trainer.listen();
        const Reply missed = trainer.press(note - 1);
        QVERIFY(!*missed.good && missed.demo);
        QCOMPARE(missed.words, "It was " + name + ".");
        QCOMPARE(trainer.tally(), std::string("You found zero of one."));
    }

    void hearsHarmonies_data()
    {
        const Table<QList<int>, QString> row{"pitches", "harmony"};
        row("C", {60, 64, 67}, u"0 4 7"_s);
        row("C over E", {52, 60, 67}, u"0 4 7"_s);
        row("A minor with its seventh", {57, 60, 64, 67}, u"9 3 7"_s);
        row("C with a sixth", {48, 64, 67, 69}, u"0 4 7"_s);
        row("G seventh without its fifth", {55, 59, 65}, u"7 4 7"_s);
        row("B diminished", {59, 62, 65}, u"11 3 6"_s);
        row("D suspended", {62, 67, 69}, u"2 5 7"_s);
        row("a fifth alone", {48, 55}, u"0 4 7"_s);
        row("a third alone", {48, 52}, u"0 4 7"_s);
        row("one key", {60}, {});
        row("octaves", {48, 60, 72}, {});
        row("a fist", {60, 61, 62, 63, 64}, {});
    }

    void hearsHarmonies()
    {
        QFETCH(QList<int>, pitches);
        QFETCH(QString, harmony);
        const auto heard = harmonyOf(std::vector<int>(pitches.begin(), pitches.end()));
        QCOMPARE(
            heard ? u"%1 %2 %3"_s.arg(heard->root).arg(heard->third).arg(heard->fifth) : QString(),
            harmony);
    }

    void theBandFollowsThePlayer()
    {
        Stage<Band> stage;
        Band &band = stage.player;
        band.setStyle(Band::Style::Simple);
        band.setTempo(120);
        band.start();
        QCOMPARE(stage.lines, QStringList({u"@bandstyle simple"_s, u"@live 1"_s}));
        band.key(48, 80, 1.0);
        QVERIFY(!band.deadline()); // one key is no chord
        band.key(52, 80, 1.01);
        band.key(55, 80, 1.02);
        stage.now = 1.02;
        stage.runTo(3.5);
        // C and its fifth on one and three, from the chord on.
        QCOMPARE(presses(stage.sound, 0), QStringList({u"36@1.01"_s, u"31@2.01"_s, u"36@3.01"_s}));
        for (const int pitch : {48, 52, 55})
            band.key(pitch, 0, 3.6);
        for (const int pitch : {53, 57, 60})
            band.key(pitch, 80, 3.7);
        band.setTempo(60); // from the next bar on
        stage.runTo(8.9);
        QCOMPARE(
            presses(stage.sound, 0, 3.5), QStringList({u"36@4.01"_s, u"29@5.01"_s, u"36@7.01"_s}));
        QVERIFY(presses(stage.sound, 9, 3.5).contains(u"38@6.01"_s));
        band.setStyle(Band::Style::Full);
        stage.runTo(60);
        band.key(53, 0, 60);
        const QStringList crashes = presses(stage.sound, 9).filter(QRegularExpression(u"^49@"_s));
        QVERIFY(crashes.size() == 1);
        band.stop();
        QCOMPARE(stage.lines.last(), u"@live 0"_s);
        QVERIFY(!band.deadline());
        band.key(48, 80, 61);
        band.key(52, 80, 61);
        QVERIFY(!band.deadline());
    }

    void theBandPlaysAsEver()
    {
        QList<int> sums;
        for (unsigned seed = 0; seed < 6; ++seed) {
            Stage<Band> stage;
            Chance chance(seed);
            stage.player.start();
            for (int i = 0; i < 30; ++i) {
                if (chance.oneIn(3))
                    stage.player.setTempo(chance.of(QList{10, 60, 95, 120, 180, 400}));
                if (chance.oneIn(6))
                    stage.player.setStyle(
                        chance.oneIn(2) ? Band::Style::Simple : Band::Style::Full);
                if (chance.oneIn(8))
                    stage.player.setLoudness(chance.of(QList{-1, 64, 200}));
                if (chance.oneIn(12))
                    stage.player.stop();
                stage.player.start();
                const int root = 40 + chance.below(12);
                const auto chord = chance.of(QList<QList<int>>{
                    {0, 4, 7}, {0, 3, 7}, {0, 3, 6}, {0, 4, 8}, {0, 7}, {0}, {0, 1, 2, 3}});
                for (const int above : chord)
                    stage.player.key(root + above, 80, stage.now);
                stage.runTo(stage.now + 0.3 * chance.below(30));
                for (const int above : chord)
                    stage.player.key(root + above, chance.oneIn(20) ? 80 : 0, stage.now);
                stage.runTo(stage.now + (chance.oneIn(8) ? 20 : 0.2));
                if (chance.oneIn(9))
                    stage.player.advance(stage.now += 0.5);
            }
            sums << stage.sum();
        }
        QCOMPARE(unlikeKept(u"band"_s, sums), QString());
    }

    void theBandRestsWithThePlayer()
    {
        Stage<Band> stage;
        stage.player.setTempo(120);
        stage.player.start();
        stage.player.key(48, 80, 0);
        stage.player.key(52, 80, 0);
        stage.runTo(30);
        QVERIFY(stage.player.deadline()); // the keys are held still
        stage.player.key(48, 0, 30);
        stage.player.key(52, 0, 30);
        stage.runTo(39);
        QVERIFY(!stage.player.deadline());
        QCOMPARE(stage.sound.silenced, 1);
        stage.player.key(48, 80, 50);
        stage.player.key(52, 80, 50);
        QVERIFY(stage.player.deadline());
        // A machine that slept does not catch up.
        const auto before = stage.sound.played.size();
        stage.player.advance(5000);
        QVERIFY(stage.sound.played.size() < before + 10);
    }
};

QTEST_APPLESS_MAIN(TrainingTest)
#include "training_test.moc"
