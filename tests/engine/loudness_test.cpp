#include "music/loudness.h"
#include "rendered.h"
#include "songs/shipped.h"
#include "sound/sound_desk.h"
#include "support/files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace kelo::engine;

namespace {

constexpr std::string_view sentence =
    "Now we learn the right hand of this piece. Listen, then play it after me.";

const std::array<std::string, 1> font{"/usr/share/sounds/sf2/TimGM6mb.sf2"};

/// The left side of a part that is told all of it, half a second each.
std::vector<float> heard(
    Synth &synth, SynthPart part, std::initializer_list<ChannelMessage> messages)
{
    std::vector<float> all;
    std::array<std::array<float, frames(0.5)>, 2 * synthParts> sides;
    std::array<Stereo, synthParts> sound;
    for (std::size_t i = 0; i < synthParts; ++i)
        sound[i] = {sides[2 * i], sides[2 * i + 1]};
    for (const ChannelMessage message : messages) {
        synth.play(part, message);
        synth.render(sound);
        const auto left = sound[static_cast<std::size_t>(part)].left;
        all.insert(all.end(), left.begin(), left.end());
    }
    return all;
}

/// The greatest difference between two sounds; silence is as long as need be.
float unlike(const std::vector<float> &a, std::vector<float> b)
{
    float most = 0;
    b.resize(a.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

} // namespace

/// What is heard, rendered in memory.
class LoudnessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theVoiceLiesOverEveryPiece()
    {
        Rendered voice(noSoundfont);
        voice.say(sentence);
        for (const Sheet &sheet : shippedSongs()) {
            const Piece piece = readSheet(sheet).value();
            Rendered music;
            music.mixer.music().setGain(levellingGain(piece));
            music.play(music.mixer.music(), piece, std::min(piece.length, 20.0));
            const double over = voice.loudness() - music.loudness();
            QVERIFY2(over > 3 && over < 6, qPrintable(QString::number(over)));
        }
    }

    void ownKeysAndTicksAreNeitherLostNorLoud()
    {
        Rendered voice;
        voice.say(sentence);
        const Piece piece = readSheet(shippedSongs()[4]).value();
        for (Instrument *part : {&voice.mixer.keys(), &voice.mixer.band()}) {
            const double from = voice.now();
            voice.play(*part, piece, 5);
            const double over = voice.loudness(0, from) - voice.loudness(from);
            QVERIFY2(over > 0 && over < 8, qPrintable(QString::number(over)));
        }
    }

    void musicGoesDownUnderSpeechAndComesBack()
    {
        Piece organ; // as loud all the time
        organ.messages = {{0, {0xc0, 19, 0}}, {0, {0x90, 60, 90}}, {0, {0x90, 67, 90}}};
        const auto playing = [&](Fader part, Instrument &(Mixer::*instrument)()) {
            Rendered music;
            music.mixer.setLoudness(Fader::Voice, 0); // what remains is the music
            for (const auto &timed : organ.messages)
                (music.mixer.*instrument)().play(0, timed.message);
            music.render(3);
            const double alone = music.loudness(1, 3);
            music.say(sentence);
            const double end = music.now();
            music.render(3);
            static_cast<void>(part);
            return std::array{
                music.loudness(3.6, end - 0.3) - alone, music.loudness(end + 1.5) - alone};
        };
        const auto piece = playing(Fader::Pieces, &Mixer::music);
        QVERIFY2(piece[0] < -6 && piece[0] > -10, qPrintable(QString::number(piece[0])));
        QVERIFY(std::abs(piece[1]) < 0.5);
        QVERIFY(std::abs(playing(Fader::Band, &Mixer::band)[0] - piece[0]) < 0.5);
        QVERIFY(std::abs(playing(Fader::Keys, &Mixer::keys)[0]) < 0.5); // one hears oneself
    }

    void nothingClipsHoweverLoud()
    {
        Rendered all;
        for (const Fader fader :
            {Fader::Pieces, Fader::Keys, Fader::Band, Fader::Ticks, Fader::Voice})
            all.mixer.setLoudness(fader, 99); // as loud as it goes
        for (Instrument *part : {&all.mixer.music(), &all.mixer.keys(), &all.mixer.band()}) {
            part->setGain(2);
            for (int pitch = 30; pitch < 100; pitch += 5)
                part->play(frames(2), {0x90, static_cast<unsigned char>(pitch), 127});
        }
        for (int i = 0; i < 20; ++i)
            all.mixer.ticks().play(frames(1 + i * 0.1), {0x99, 76, 127});
        all.say(sentence);
        QVERIFY2(all.peak() <= Limiter::ceiling, qPrintable(QString::number(all.peak())));
        QVERIFY(all.peak() > 0.9F * Limiter::ceiling);
        QVERIFY(all.loudness() > -16);
    }

    void findsSoundfontsBestFirst()
    {
        QTemporaryDir folder;
        const std::filesystem::path path = folder.path().toStdString();
        const auto write = [&](const char *name, int size) {
            kelo::test::writeFile(folder.filePath(QString::fromUtf8(name)), QByteArray(size, 'x'));
        };
        write("TimGM6mb.sf2", 900);
        write("my_own-piano.SF2", 5); // as some systems name it
        write("small one.sf3", 10);
        write("large_one.sf2", 100);
        write("MuseScore_General.sf3", 1);
        write("FluidR3_GM.sf2", 1);
        std::filesystem::create_symlink("FluidR3_GM.sf2", path / "default-GM.sf2");
        std::filesystem::create_symlink("missing.sf2", path / "broken.sf2");
        std::filesystem::create_directory(path / "folder.sf2");
        QStringList names;
        for (const Soundfont &found : findSoundfonts(std::array{path, path, path / "nowhere"}))
            names << QString::fromStdString(found.name);
        QCOMPARE(names,
            QStringList({u"MuseScore General"_s, u"Fluid"_s, u"large one"_s, u"small one"_s,
                u"my own piano"_s, u"Tim"_s}));
    }

    void otherInstrumentsGoOnWithWhatWasSet()
    {
        QTemporaryDir folder;
        const QString broken = folder.filePath(u"broken.sf2"_s);
        kelo::test::writeFile(broken, "RIFF");
        const std::string tim = "/usr/share/sounds/sf2/TimGM6mb.sf2";
        Rendered sound;
        SoundDesk desk(sound.mixer, {{"Tim", tim}, {"Broken", broken.toStdString()}}, tim, [] {});
        QCOMPARE(desk.playing(), std::optional<std::size_t>(0));
        const auto organ = [&] {
            const double from = sound.now();
            sound.mixer.music().play(0, {0x90, 60, 90});
            sound.render(1);
            sound.mixer.music().silence();
            sound.render(1);
            return sound.loudness(from + 0.5, from + 1);
        };
        sound.mixer.music().play(0, {0xc0, 19, 0});
        sound.mixer.music().play(0, {0xb0, 7, 60});
        const double before = organ();
        const auto load = [&](std::size_t which) {
            if (!desk.choose(which) || desk.choose(which))
                return false; // one at a time
            std::optional<SoundDesk::Loaded> loaded;
            while (!loaded)
                loaded = desk.advance();
            sound.render(0.1);
            return loaded->works && loaded->soundfont == which;
        };
        QVERIFY(!load(1));
        QCOMPARE(desk.playing(), std::optional<std::size_t>(0));
        QVERIFY(std::abs(organ() - before) < 0.2);
        QVERIFY(load(0));
        QVERIFY(std::abs(organ() - before) < 0.2);
        QVERIFY(!desk.choose(2));
    }

    void otherInstrumentsSoundAsTheirForerunnersDid()
    {
        for (const ChannelMessage told :
            {ChannelMessage{0xc3, 48, 0}, ChannelMessage{0xb3, 1, 127}, ChannelMessage{0xb3, 7, 50},
                ChannelMessage{0xb3, 10, 5}, ChannelMessage{0xb3, 11, 40},
                ChannelMessage{0xb3, 64, 127}, ChannelMessage{0xb3, 91, 127}}) {
            Synth usual(font);
            Synth changed(font);
            Synth other(font);
            changed.play(SynthPart::Band, told);
            other.adopt(changed);
            const auto left = [&](Synth &synth) {
                return heard(synth, SynthPart::Band, {{0x93, 60, 90}, {0x83, 60, 0}});
            };
            const auto expected = left(changed);
            QVERIFY(unlike(left(other), expected) < 1e-5 && unlike(left(usual), expected) > 1e-3);
        }
    }

    void instrumentsThatComeLaterAreHeard()
    {
        Rendered sound(noSoundfont);
        sound.mixer.setInstruments(std::make_unique<Synth>(font));
        sound.mixer.music().play(0, {0x90, 60, 90});
        sound.render(0.5);
        QVERIFY(sound.mixer.sounds() && sound.peak() > 0.01F);
    }

    void eachPartDoesWhatItIsTold()
    {
        // Waves and dB of each quarter of a second.
        constexpr std::array<std::pair<int, int>, 26> expected{
            {{163, 16}, {131, 10}, {131, -3}, {213, -35}, {615, 17}, {478, -28}, {235, -38},
                {154, -50}, {367, 17}, {386, 17}, {432, 17}, {432, 17}, {374, 17}, {385, 16},
                {333, 0}, {375, -4}, {372, -4}, {357, -4}, {360, -4}, {367, -3}, {374, -4},
                {353, -4}, {367, -4}, {367, -4}, {353, -12}, {395, -36}}};
        for (std::size_t number = 0; number < synthParts; ++number) {
            const auto part = static_cast<SynthPart>(number);
            Synth synth(font);
            // A key and the room after it, a drum, an organ that is bent and turned down, pedals.
            const auto sound = heard(synth, part,
                {{0x90, 72, 90}, {0x80, 72, 0}, {0x99, 38, 90}, {0xc0, 19, 0}, {0x90, 69, 100},
                    {0xe0, 127, 127}, {0xe0, 0, 32}, {0xb0, 11, 40}, {0xd0, 127, 0},
                    {0xb0, 64, 127}, {0x80, 69, 0}, {0xb0, 91, 127}, {0xb0, 64, 0}});
            for (std::size_t i = 0; i < expected.size(); ++i) { // twice a message
                const auto begin = sound.begin() + std::ptrdiff_t(i * sound.size() / 26);
                double squares = 0;
                int waves = 0;
                for (auto at = begin + 1; at < begin + std::ptrdiff_t(sound.size() / 26); ++at) {
                    squares += *at * *at;
                    waves += at[-1] < 0 && *at >= 0;
                }
                QVERIFY(std::abs(waves - expected[i].first) < 9);
                QVERIFY(std::abs(10 * std::log10(squares) - expected[i].second) < 1);
            }
            heard(synth, part, {{0x90, 60, 90}});
            synth.release(part);
            heard(synth, part, {{0xb0, 7, 100}});
            QVERIFY(unlike(heard(synth, part, {{0xb0, 7, 100}}), {}) < 0.01F);
        }
    }

    void theDeskKeepsWithinItsBounds()
    {
        Rendered sound(noSoundfont);
        SoundDesk desk(sound.mixer, {}, {}, [] {});
        QCOMPARE(desk.loudness(Fader::Band), 100);
        desk.setLoudness(Fader::Band, 1000);
        desk.setLoudness(Fader::Voice, -1);
        QCOMPARE(desk.loudness(Fader::Band), SoundDesk::loudest);
        QCOMPARE(desk.loudness(Fader::Voice), 0);
        QVERIFY(!desk.playing() && !desk.choose(0) && !desk.advance());
    }

    void eachLoudnessIsItsOwn()
    {
        const Piece piece = readSheet(shippedSongs()[1]).value();
        using Part = Instrument &(Mixer::*)();
        const std::array<std::pair<Fader, Part>, 4> parts{
            {{Fader::Pieces, &Mixer::music}, {Fader::Keys, &Mixer::keys},
                {Fader::Band, &Mixer::band}, {Fader::Ticks, &Mixer::ticks}}};
        for (const auto &[fader, part] : parts) {
            Rendered sound;
            sound.play((sound.mixer.*part)(), piece, 3);
            const double asItIs = sound.loudness();
            for (const auto &[other, instrument] : parts) {
                if (other != fader)
                    sound.mixer.setLoudness(other, 0);
            }
            sound.mixer.setLoudness(fader, 0.5);
            sound.render(1);
            const double from = sound.now();
            sound.play((sound.mixer.*part)(), piece, 3);
            QVERIFY(std::abs(sound.loudness(from) - asItIs + 6) < 0.3);
        }
    }
};

QTEST_GUILESS_MAIN(LoudnessTest)
#include "loudness_test.moc"
