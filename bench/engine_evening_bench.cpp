// Ten minutes that use every activity, then an hour of activities by chance, as fast as it goes.
// Prints how loud each activity is, what clips and what is silent, how long the assistant thinks at
// most and how much its memory grows. [KELO_KEEP_SOUND=FILE] keeps the ten minutes as a WAV file,
// [KELO_BENCH_FULL=1] runs the hour; else it is ten minutes, too.

#include "listen/jobs.h"
#include "support/figures.h"
#include "support/offline_engine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::bench::OfflineEngine;
using kelo::bench::print;
using kelo::bench::privateMemory;

namespace {

constexpr double mebibyte = 1024 * 1024;
constexpr float audible = 0.001F;
constexpr float clipped = 0.999F;

enum class Hands { Rest, Melody, Chords, Scale };

/// What is done in one of the ten minutes.
struct Scene {
    std::string name;
    std::vector<std::string> said; ///< one after the other, each in its part of the time
    double seconds;
    Hands hands = Hands::Rest;
};

const std::vector<Scene> &scenes()
{
    static const std::vector<Scene> all{
        {"help", {"help"}, 20},
        {"original piece", {"play me something happy", "what time is it"}, 45},
        {"composing", {"compose"}, 25, Hands::Melody},
        {"theme and variations", {"play it as a band", "another variation"}, 50},
        {"arrangements", {"make it a lullaby", "make it a video game", "make it epic"}, 60},
        {"jam", {"jam with me"}, 40, Hands::Melody},
        {"band", {"live band", "full band", "band louder"}, 40, Hands::Chords},
        {"jazz lesson", {"jazz lesson two"}, 45, Hands::Chords},
        {"ear training", {"ear training"}, 40, Hands::Scale},
        {"metronome", {"metronome in three four at one twenty", "metronome in triplets"}, 25},
        {"lesson", {"teach me the ode to joy"}, 70, Hands::Scale},
        {"song with metronome", {"play the minuet in g", "metronome", "what day is it"}, 50},
        {"album", {"keep that", "play my album"}, 35},
        {"studio", {"logic control", "reaper control"}, 15},
        {"surprise", {"surprise me"}, 40},
    };
    return all;
}

/// How a stretch of sound is.
class Level {
public:
    void add(std::span<const float> left, std::span<const float> right)
    {
        for (std::size_t i = 0; i < left.size(); ++i) {
            const float sample = std::max(std::abs(left[i]), std::abs(right[i]));
            peak_ = std::max(peak_, sample);
            clipped_ += sample >= clipped;
            energy_ += static_cast<double>(left[i]) * left[i] / 2
                + static_cast<double>(right[i]) * right[i] / 2;
            ++count_;
            silent_ = sample < audible ? silent_ + 1 : 0;
            longestSilence_ = std::max(longestSilence_, silent_);
        }
    }
    void tell(const std::string &name) const
    {
        const QString what = QString::fromStdString(name);
        const double mean = energy_ / std::max<double>(1, static_cast<double>(count_));
        print(what + u": peak"_s, 20 * std::log10(std::max(peak_, 1e-5F)), u"dB"_s);
        print(what + u": mean"_s, 10 * std::log10(std::max(mean, 1e-10)), u"dB"_s);
        print(what + u": longest silence"_s, seconds(longestSilence_), u"s"_s);
        print(what + u": clipped"_s, static_cast<double>(clipped_), u"samples"_s);
    }

private:
    float peak_ = 0;
    double energy_ = 0;
    Frame count_ = 0;
    Frame clipped_ = 0;
    Frame silent_ = 0;
    Frame longestSilence_ = 0;
};

/// Plays without listening: a key or a chord every now and then.
class Pupil {
public:
    explicit Pupil(OfflineEngine &engine)
        : engine_(engine)
    {
    }

    void play(Hands hands, double since)
    {
        const double every = hands == Hands::Chords ? 2 : 0.4;
        const double into = std::fmod(since, every);
        const bool down = into < every * 0.8 && std::fmod(since, 12) < 7;
        if (down && held_.empty())
            hold(hands, static_cast<std::size_t>(since / every));
        if (!down)
            release();
    }
    void release()
    {
        for (const int pitch : held_)
            engine_.press(pitch, 0);
        held_.clear();
    }

private:
    void hold(Hands hands, std::size_t count)
    {
        static const std::vector<std::vector<int>> chords{
            {48, 60, 64, 67}, {45, 60, 64, 69}, {50, 62, 65, 69}, {43, 59, 62, 67}};
        constexpr std::array melody{60, 62, 64, 67, 65, 64, 62, 67, 69, 67, 64, 60};
        constexpr std::array scale{64, 64, 65, 67, 67, 65, 64, 62};
        if (hands == Hands::Chords)
            held_ = chords[count % chords.size()];
        else if (hands != Hands::Rest)
            held_ = {hands == Hands::Melody ? melody[count % melody.size()]
                                            : scale[count % scale.size()]};
        for (const int pitch : held_)
            engine_.press(pitch, 84);
    }

    OfflineEngine &engine_;
    std::vector<int> held_;
};

void tenMinutes(OfflineEngine &engine)
{
    Pupil pupil(engine);
    QByteArray sound;
    Level all;
    for (const Scene &scene : scenes()) {
        Level level;
        const double begun = engine.now();
        std::size_t said = 0;
        while (engine.now() < begun + scene.seconds) {
            const double since = engine.now() - begun;
            const double part = scene.seconds / static_cast<double>(scene.said.size());
            if (said < scene.said.size() && since >= part * static_cast<double>(said))
                engine.take(Command{"say " + scene.said[said++]});
            if (!engine.speaking())
                pupil.play(scene.hands, since);
            engine.step();
            level.add(engine.left(), engine.right());
            all.add(engine.left(), engine.right());
            for (std::size_t i = 0; i < OfflineEngine::block; ++i) {
                for (const float sample : {engine.left()[i], engine.right()[i]}) {
                    const qint16 value =
                        qToLittleEndian(static_cast<qint16>(std::lround(sample * 32767)));
                    sound.append(reinterpret_cast<const char *>(&value), sizeof value);
                }
            }
        }
        pupil.release();
        level.tell(scene.name);
    }
    all.tell("ten minutes");
    QFile file(qEnvironmentVariable("KELO_KEEP_SOUND"));
    if (!file.fileName().isEmpty() && file.open(QIODevice::WriteOnly)) {
        const auto number = [](quint32 value) {
            value = qToLittleEndian(value);
            return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
        };
        const auto size = static_cast<quint32>(sound.size());
        file.write("RIFF" + number(36 + size) + "WAVEfmt " + number(16) + number(0x20001)
            + number(44100) + number(44100 * 4) + number(0x100004) + "data" + number(size));
        file.write(sound);
    }
}

/// All that can be asked for, as the command page has it.
std::vector<std::string> requests()
{
    std::vector<std::string> all;
    for (const JobGroup &group : jobGroups()) {
        for (const Job &job : group.jobs) {
            for (const Phrase &phrase : job.phrases) {
                if (!phrase.example.empty())
                    all.push_back("say " + sayable(phrase.example));
            }
        }
    }
    return all;
}

void byChance(OfflineEngine &engine)
{
    const double length = qEnvironmentVariableIsSet("KELO_BENCH_FULL") ? 3600 : 600;
    constexpr int parts = 6;
    const auto asked = requests();
    std::mt19937 random(5);
    std::vector<double> thinking; ///< from a request to all that it does at once
    double busiest = 0;
    std::vector<double> memory; ///< after each part, in MiB
    Pupil pupil(engine);
    const double begun = engine.now();
    double next = begun;
    for (auto hands = Hands::Rest; engine.now() < begun + length;) {
        if (engine.now() >= next) {
            const Command request{asked[random() % asked.size()]};
            QElapsedTimer timer;
            timer.start();
            engine.take(request);
            thinking.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            hands = static_cast<Hands>(random() % 4);
            next = engine.now() + 2 + static_cast<double>(random() % 12);
        }
        pupil.play(hands, engine.now());
        busiest = std::max(busiest, engine.step());
        if (engine.now() - begun > length / parts * static_cast<double>(memory.size() + 1))
            memory.push_back(privateMemory() / mebibyte);
    }
    std::ranges::sort(thinking);
    print(u"requests by chance"_s, static_cast<double>(thinking.size()), u""_s);
    print(u"a request is dealt with, median"_s, thinking[thinking.size() / 2], u"ms"_s);
    print(u"at most"_s, thinking.back(), u"ms"_s);
    print(u"one turn of the loop, at most"_s, busiest * 1000, u"ms"_s);
    print(u"11.6 ms of sound are made in, at most"_s, engine.longestRender() * 1000, u"ms"_s);
    for (std::size_t i = 0; i < memory.size(); ++i)
        print(u"memory after part %1 of %2"_s.arg(i + 1).arg(parts), memory[i], u"MiB"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    kelo::bench::printMachine();
    // One for both: eSpeak NG waits for ever where it is ended a second time.
    OfflineEngine engine([](std::string_view) {});
    engine.begin();
    tenMinutes(engine);
    byChance(engine);
    return 0;
}
