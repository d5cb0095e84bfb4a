// How well the engine keeps to its sound, how fast it answers and whether it grows: its parts by
// themselves, then the program as a display runs it.

#include "music/midi_writer.h"
#include "protocol/wire.h"
#include "sound/mixer.h"
#include "speech/speaker.h"
#include "speech/synthesiser.h"
#include "support/figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::bench::print;

namespace {

constexpr std::size_t blockFrames = 128;

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

double worst(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::ranges::max_element(values);
}

/// When each sound begins after at least `silence` seconds without one, in seconds.
std::vector<double> onsets(const std::vector<float> &samples, double silence)
{
    constexpr float audible = 0.01F;
    std::vector<double> found;
    double last = -1;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (std::abs(samples[i]) < audible)
            continue;
        const double at = seconds(static_cast<Frame>(i));
        if (at - last > silence)
            found.push_back(at);
        last = at;
    }
    return found;
}

/// Renders speech block by block, with a clock that goes by the samples, and compares when each
/// word is told with when it begins in the sound.
void measureWords()
{
    AudioClock clock(0);
    Mixer mixer(std::make_unique<Synth>(std::span<const std::string>{}), clock);
    double now = 0;
    std::vector<double> told;
    bool over = false;
    Wire wire([&](std::string_view line) {
        if (line.starts_with("@word"))
            told.push_back(now);
        over = over || line.starts_with("@done");
    });
    SpeechDispatcher dispatcher(false, {});
    Synthesiser voice([] {});
    Speaker speaker(wire, dispatcher, voice, mixer, clock);
    // Stop consonants begin with a silence that belongs to them: those words are told too early
    // by as much, so all kinds of beginnings are asked for.
    speaker.say("Apple. Music. Listen. Bee. Never. Song. Pause. Always. Right. Hand. Left. Key. "
                "Minuet. Other. Note. Five. Window. Evening. Yes. Done.",
        now);
    std::vector<float> sound;
    while (!over && now < 120) {
        std::array<float, blockFrames> left{};
        std::array<float, blockFrames> right{};
        mixer.render(left, right, now);
        sound.insert(sound.end(), left.begin(), left.end());
        now += seconds(blockFrames);
        QThread::usleep(200); // the synthesiser is on a thread of its own
        speaker.advance(now);
    }
    const auto begun = onsets(sound, 0.25);
    std::vector<double> errors;
    for (const double at : begun) {
        const auto nearest =
            std::ranges::min_element(told, {}, [at](double time) { return std::abs(time - at); });
        if (nearest != told.end())
            errors.push_back(std::abs(*nearest - at) * 1000);
    }
    print(u"words compared"_s, static_cast<double>(errors.size()), u"of 20"_s);
    print(u"a word told off its sound, median"_s, median(errors), u"ms"_s);
    print(u"worst"_s, worst(errors), u"ms"_s);
}

/// From the moment at which a key is handed on to the first sample of its sound.
void measureKey()
{
    std::vector<std::string> fonts{
        "/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/TimGM6mb.sf2"};
    AudioClock clock(0);
    Mixer mixer(std::make_unique<Synth>(fonts), clock);
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
    mixer.render(left, right, 0);
    static_cast<void>(mixer.keys().play(0, {0x90, 60, 100}));
    std::vector<float> sound;
    for (int block = 0; block < 100; ++block) {
        mixer.render(left, right, seconds(block * static_cast<Frame>(blockFrames)));
        sound.insert(sound.end(), left.begin(), left.end());
    }
    const auto first = onsets(sound, 0);
    print(u"a key's sound within its first block"_s, first.empty() ? -1 : first.front() * 1000,
        u"ms"_s);
}

/// The engine, its home and its piano.
class Engine {
public:
    Engine()
    {
        QFile profile(folder.filePath(u"profile.json"_s));
        if (profile.open(QIODevice::WriteOnly))
            profile.write(R"({"user": "Ann"})");
        profile.close();
        const QByteArray pipe = folder.filePath(u"piano"_s).toUtf8();
        if (mkfifo(pipe, 0600) != 0)
            qFatal("no pipe can be made");
        piano = open(pipe, O_RDWR | O_NONBLOCK);
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"KELO_SOUND"_s, u"silent"_s);
        environment.insert(u"KELO_HOME"_s, folder.path());
        environment.insert(u"HOME"_s, folder.path());
        environment.insert(u"KELO_PIANO"_s, QString::fromUtf8(pipe));
        process.setProcessEnvironment(environment);
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(QStringLiteral(ENGINE_PROGRAM), {});
        if (!process.waitForStarted() || !waitFor("@say"))
            qFatal("the engine does not start");
    }
    ~Engine()
    {
        process.write("q");
        process.waitForFinished(3000);
        close(piano);
    }
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    bool waitFor(const QByteArray &beginning)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 20'000) {
            while (process.canReadLine()) {
                if (process.readLine().startsWith(beginning))
                    return true;
            }
            process.waitForReadyRead(100);
        }
        return false;
    }
    void send(const QByteArray &bytes)
    {
        process.write(bytes);
        process.waitForBytesWritten();
    }
    void press(int pitch, int velocity) const
    {
        const std::array<char, 3> bytes{
            '\x90', static_cast<char>(pitch), static_cast<char>(velocity)};
        if (write(piano, bytes.data(), bytes.size()) != 3)
            qFatal("the piano is gone");
    }
    /// Private memory, in MiB.
    [[nodiscard]] double memory() const
    {
        return kelo::bench::privateMemory(QString::number(process.processId())) / (1024 * 1024);
    }

    /// The most memory that it ever had, in MiB.
    [[nodiscard]] double peakMemory() const
    {
        QFile status(u"/proc/%1/status"_s.arg(process.processId()));
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
        }
        return 0;
    }

    QTemporaryDir folder;

private:
    QProcess process;
    int piano = -1;
};

void measureLatency(Engine &engine)
{
    engine.send("\n");
    std::vector<double> milliseconds;
    QElapsedTimer timer;
    for (int i = 0; i < 500; ++i) {
        timer.start();
        engine.press(60, i % 2 == 0 ? 80 : 0);
        if (!engine.waitFor("@on 60"))
            qFatal("a key was not heard");
        milliseconds.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        QThread::msleep(2);
    }
    std::ranges::sort(milliseconds);
    print(u"from a key to \"@on\", median"_s, median(milliseconds), u"ms"_s);
    print(u"99 of 100 within"_s, milliseconds[milliseconds.size() * 99 / 100], u"ms"_s);
}

void measureRoll(Engine &engine)
{
    Piece piece;
    for (int i = 0; i < 10'000; ++i)
        piece.notes.push_back({i * 0.05, 0.04, 30 + i % 70, 80, 0, 0});
    measureLength(piece);
    const auto bytes = writeMidiFile(piece);
    QFile file(engine.folder.filePath(u"long.mid"_s));
    if (file.open(QIODevice::WriteOnly))
        file.write(reinterpret_cast<const char *>(bytes.data()), static_cast<qint64>(bytes.size()));
    file.close();
    QElapsedTimer timer;
    timer.start();
    engine.send("~play " + file.fileName().toUtf8() + '\n');
    if (!engine.waitFor("@rollstart"))
        qFatal("the file was not played");
    print(u"a roll of 10,000 notes is there after"_s,
        static_cast<double>(timer.nsecsElapsed()) / 1e6, u"ms"_s);
    engine.send("0");
}

/// The most that the engine holds while it reads and plays a file of the largest size.
void measureLargeFile(Engine &engine)
{
    constexpr quint32 notes = 1'390'000; // six bytes each, the fewest that a note takes
    QByteArray track("\x00\x90", 2);
    for (quint32 i = 0; i < notes; ++i) {
        const auto key = static_cast<char>(30 + i % 70);
        track.append(std::array<char, 6>{key, 80, 1, key, 0, 0}.data(), 6);
    }
    track += QByteArray("\x3c\x00\x00\xff\x2f\x00", 6);
    QByteArray bytes("MThd\0\0\0\6\0\0\0\1\0\x60MTrk", 18);
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(track.size() >> shift);
    bytes += track;
    QFile file(engine.folder.filePath(u"largest.mid"_s));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    file.close();
    const double size = static_cast<double>(bytes.size()) / (1024 * 1024);
    const double before = engine.peakMemory();
    engine.send("~play " + file.fileName().toUtf8() + '\n');
    if (!engine.waitFor("@rollstart"))
        qFatal("the file was not played");
    const double more = engine.peakMemory() - before;
    print(u"a file of"_s, size, u"MiB"_s);
    print(u"takes at most"_s, more, u"MiB"_s);
    print(u"times its size"_s, more / size, u""_s);
    engine.send("0");
}

/// Lesson after lesson as fast as they go: each part is begun, played wrong, and skipped.
void measureGrowth(Engine &engine)
{
    const auto lessons = [&](int count) {
        for (int i = 0; i < count; ++i) {
            engine.send("~say teach me song " + QByteArray::number(1 + i % 8) + "\n");
            for (int part = 0; part < 20; ++part) {
                engine.send(part % 2 == 0 ? "\x1b[C\n" : " \n");
                engine.press(60 + part % 12, 80);
                engine.press(60 + part % 12, 0);
                engine.send("~ear 0 kelo what\n~ear 1 kelo what notes\n\n");
            }
            if (!engine.waitFor("@heard"))
                qFatal("the engine does not answer");
        }
        engine.send("0~say what day is it\n");
        static_cast<void>(engine.waitFor("@say It is"));
    };
    lessons(20);
    const double before = engine.memory();
    lessons(180);
    print(u"memory after 20 hasty lessons"_s, before, u"MiB"_s);
    print(u"more after another 180"_s, engine.memory() - before, u"MiB"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    kelo::bench::printMachine();
    measureWords();
    measureKey();
    Engine engine;
    measureLatency(engine);
    measureRoll(engine);
    measureLargeFile(engine);
    measureGrowth(engine);
    return 0;
}
