#include "midi_bytes.h"
#include "music/midi_file.h"
#include "music/player.h"
#include "stage.h"
#include "sums.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using namespace midi;

namespace {

Piece piece(const Bytes &events)
{
    return std::get<Piece>(readMidiFile(join({header(0, 1, 480), track(join({events, end}))})));
}

} // namespace

class PlayerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsThePieceInStepWithTheSound()
    {
        Stage<Player> stage;
        stage.player.start(piece(join({at(0, {0x90, 60, 80}), at(0, {0x90, 60, 70}),
                               at(480, {0x80, 60, 0}), at(480, {0x80, 60, 0})})),
            "Two", 0);
        QCOMPARE(stage.take(),
            QStringList({u"@rollnew Two"_s, u"@rolln 0.0000,0.5000,60,80,0;0.0000,1.0000,60,70,0"_s,
                u"@rollstart 3.0000 1.0000"_s}));
        stage.runTo(10);
        // The key stays lit until the last of the two notes on it ends.
        QCOMPARE(stage.take(),
            QStringList({u"@out 60 80"_s, u"@out 60 70"_s, u"@out 60 0"_s, u"@rollstop"_s}));
        QVERIFY(std::abs(stage.times.at(3) - 3.0) < 0.002);
        QVERIFY(std::abs(stage.times.at(5) - 4.0) < 0.002);
        QCOMPARE(stage.sound.played.back().frame, frames(4.0));
        QVERIFY(!stage.player.deadline());
    }

    void pausesAndCarriesOnWhereItWas()
    {
        Stage<Player> stage;
        stage.player.start(piece(join({at(0, {0x90, 60, 80}), at(480, {0x80, 60, 0}),
                               at(480, {0x90, 62, 80}), at(480, {0x80, 62, 0})})),
            "P", 0);
        stage.runTo(3.7);
        stage.take();
        stage.player.pause(3.75);
        QCOMPARE(stage.take(), QStringList({u"@rollstop"_s, u"@paused 1"_s}));
        QVERIFY(!stage.player.deadline());
        QCOMPARE(stage.sound.silenced, 1);
        stage.player.carryOn(60);
        stage.now = 60;
        // 0.75 s in: the first note is over and left out.
        QCOMPARE(stage.take(),
            QStringList({u"@paused 0"_s, u"@rollnew P"_s, u"@rolln 1.0000,0.5000,62,80,0"_s,
                u"@rollstart -0.6500 1.5000"_s}));
        stage.runTo(62);
        QCOMPARE(stage.take(), QStringList({u"@out 62 80"_s, u"@out 62 0"_s, u"@rollstop"_s}));
        QVERIFY(std::abs(stage.times.at(stage.times.size() - 3) - 60.35) < 0.002);
    }

    void aStopPutsOutEveryLamp()
    {
        Stage<Player> stage;
        stage.player.start(
            piece(join({at(0, {0x90, 60, 80}), at(0, {0x90, 64, 80}), at(9600, {0x80, 60, 0})})),
            "S", 0);
        stage.runTo(3.5);
        stage.take();
        stage.player.stop();
        stage.player.stop();
        QCOMPARE(stage.take(), QStringList({u"@out 60 0"_s, u"@out 64 0"_s, u"@rollstop"_s}));
        stage.player.again(9);
        stage.player.pause(13);
        stage.take();
        stage.player.stop();
        QCOMPARE(stage.take(), QStringList({u"@paused 0"_s}));
        stage.player.carryOn(14);
        QVERIFY(stage.take().isEmpty());
    }

    void drumsSoundButAreNotShown()
    {
        Stage<Player> stage;
        stage.player.start(piece(join({at(0, {0x99, 36, 90}), at(480, {0x89, 36, 0}),
                               at(0, {0x90, 60, 80}), at(480, {0x80, 60, 0})})),
            "D", 0);
        stage.runTo(9);
        QCOMPARE(stage.take(),
            QStringList({u"@rollnew D"_s, u"@rolln 0.5000,0.5000,60,80,0"_s,
                u"@rollstart 3.0000 1.0000"_s, u"@out 60 80"_s, u"@out 60 0"_s, u"@rollstop"_s}));
        const auto &played = stage.sound.played;
        QVERIFY(std::any_of(played.begin(), played.end(), [](const auto &p) {
            return p.message == ChannelMessage{0x99, 36, 90};
        }));
    }

    void carryingOnRestoresTheChannels()
    {
        Stage<Player> stage;
        stage.player.start(
            piece(join({at(0, {0xc2, 40}), at(0, {0xb2, 64, 127}), at(0, {0xe2, 1, 2}),
                at(0, {0x92, 60, 80}), at(960, {0xc2, 41}), at(0, {0x82, 60, 0})})),
            "C", 0);
        stage.runTo(3.5);
        stage.player.pause(3.5);
        stage.sound.played.clear();
        stage.player.carryOn(4);
        const auto sent = [&](ChannelMessage message) {
            return std::any_of(stage.sound.played.begin(), stage.sound.played.end(),
                [&](const auto &p) { return p.frame == 0 && p.message == message; });
        };
        QVERIFY(sent({0xc2, 40, 0}));
        QVERIFY(sent({0xb2, 64, 127}));
        QVERIFY(sent({0xe2, 1, 2}));
        QVERIFY(sent({0xc0, 0, 0}));
        QVERIFY(!sent({0xc2, 41, 0}));
        QVERIFY(!sent({0x92, 60, 80}));
    }

    void playsInAnotherTempo()
    {
        Stage<Player> stage;
        const Piece music = piece(join({at(0, {0x90, 60, 80}), at(480, {0x80, 60, 0}),
            at(480, {0x90, 62, 80}), at(480, {0x80, 62, 0})})); // at 0 and at 1 s
        stage.player.setTempo(0.5, 0);
        stage.player.start(music, "T", 0);
        QCOMPARE(stage.take().mid(1),
            QStringList({u"@rolln 0.0000,1.0000,60,80,0;2.0000,1.0000,62,80,0"_s,
                u"@rollstart 3.0000 3.0000"_s}));
        stage.runTo(4.5); // three quarters of a second of it
        stage.take();
        stage.player.setTempo(1, 4.5);
        QCOMPARE(stage.take().last(), u"@rollstart -0.6500 1.5000"_s);
        stage.runTo(6);
        QCOMPARE(stage.take(), QStringList({u"@out 62 80"_s, u"@out 62 0"_s, u"@rollstop"_s}));
        QVERIFY(std::abs(stage.times.at(stage.times.size() - 3) - 4.85) < 0.002);
    }

    void demonstratesWithoutARoll()
    {
        Stage<Player> stage;
        stage.player.demonstrate(piece(join({at(0, {0x90, 60, 80}), at(480, {0x80, 60, 0})})), 0);
        stage.runTo(0.5);
        stage.player.pause(0.5);
        stage.player.carryOn(1);
        stage.now = 1;
        stage.runTo(2);
        QCOMPARE(stage.take(),
            QStringList({u"@out 60 80"_s, u"@out 60 0"_s, u"@paused 1"_s, u"@paused 0"_s}));
    }

    void goesAboutAPieceAsEver()
    {
        QList<int> sums;
        for (unsigned seed = 0; seed < 6; ++seed) {
            Stage<Player> stage;
            Chance chance(seed);
            Piece music;
            for (int i = 0; i < 60; ++i)
                music.notes.push_back({i * 0.25, 0.1 * (1 + chance.below(9)), 60 + chance.below(8),
                    40 + chance.below(80), chance.below(3), chance.oneIn(5) ? 9 : chance.below(3)});
            for (int i = 0; i < 25; ++i)
                music.messages.push_back({i * 0.6,
                    {static_cast<unsigned char>(
                         chance.of(QList{0xb0, 0xb0, 0xc0, 0xe0}) + chance.below(16)),
                        static_cast<unsigned char>(
                            chance.of(QList{1, 7, 10, 11, 64, 119, 120, 121})),
                        static_cast<unsigned char>(chance.below(128))}});
            music.bars = {0, 2, 4, 6, 8, 10, 12, 14};
            measureLength(music);
            for (int i = 0; i < 30; ++i) {
                chance.of(QList<std::function<void()>>{
                    [&] { stage.player.start(music, "Piece", stage.now); },
                    [&] { stage.player.demonstrate(music, stage.now); },
                    [&] { stage.player.pause(stage.now); },
                    [&] { stage.player.carryOn(stage.now); },
                    [&] { stage.player.seek(chance.below(20) - 2, stage.now); },
                    [&] {
                        stage.player.setTempo(chance.of(QList{0.5, 1.0, 1.7}), stage.now);
                    },
                    [&] { stage.player.again(stage.now); }, [&] { stage.player.stop(); },
                    [&] { stage.player.open(Piece{}); },
                    [&] { stage.player.touch(60 + chance.below(5), chance.below(3) * 40); },
                    [&] { stage.runTo(stage.now + 20); }})();
                stage.lines << QString::number(stage.player.position(stage.now), 'f', 3);
                stage.lines << QString::number(stage.sound.gain);
                stage.runTo(stage.now + 0.31 * chance.below(20));
            }
            sums << stage.sum();
        }
        QCOMPARE(unlikeKept(u"player"_s, sums), QString());
    }

    void aLongRollComesInBatches()
    {
        Stage<Player> stage;
        stage.player.start(std::get<Piece>(readMidiFile(scale(1000))), "L", 0);
        const QStringList rolls = stage.take().filter(u"@rolln "_s);
        QCOMPARE(rolls.size(), 16);
        qsizetype notes = 0;
        for (const QString &line : rolls)
            notes += line.count(u';') + 1;
        QCOMPARE(notes, 1000);
        QVERIFY(stage.sound.played.size() < 200); // the sound is told only what is near
    }
};

QTEST_APPLESS_MAIN(PlayerTest)
#include "player_test.moc"
