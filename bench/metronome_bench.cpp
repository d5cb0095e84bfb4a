// How steady the metronome is as it is heard: the engine plays into a sound server of its own that
// has no loudspeaker, whose sound is recorded. [KELO_BENCH_FULL=1] for five minutes.

#include "support/figures.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

using namespace Qt::StringLiterals;
using kelo::bench::print;

namespace {

constexpr int rate = 48'000; // samples a second of the recording
constexpr double beat = 60.0 / 90; // seconds between two beats at the metronome's first tempo
constexpr double steady = 0.002; // seconds by which nobody hears a beat to be off

/// A sound server without loudspeaker, its recorder, and the engine that plays into it.
class Room {
public:
    Room()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        const QString socket = folder_.filePath(u"socket"_s);
        environment.insert(u"HOME"_s, folder_.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, folder_.path());
        environment.insert(u"PULSE_SERVER"_s, u"unix:"_s + socket);
        environment.insert(u"KELO_HOME"_s, folder_.path());
        environment.insert(u"KELO_SOUND"_s, u"pulseaudio"_s);
        for (QProcess *process : {&server_, &recorder_, &engine_}) {
            process->setProcessEnvironment(environment);
            process->setStandardErrorFile(QProcess::nullDevice());
        }
        server_.start(u"pulseaudio"_s,
            {u"-n"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--exit-idle-time=-1"_s,
                u"-L"_s, u"module-native-protocol-unix auth-anonymous=1 socket="_s + socket,
                u"-L"_s, u"module-null-sink rate=%1"_s.arg(rate)});
        QElapsedTimer waiting;
        waiting.start();
        while (!QFile::exists(socket) && waiting.elapsed() < 5000)
            QThread::msleep(50);
        recorder_.start(u"parec"_s,
            {u"-d"_s, u"null.monitor"_s, u"--format=s16le"_s, u"--rate=%1"_s.arg(rate),
                u"--channels=1"_s, u"--raw"_s});
        engine_.setStandardOutputFile(QProcess::nullDevice());
        engine_.start(QStringLiteral(ENGINE_PROGRAM), {});
    }
    ~Room()
    {
        for (QProcess *process : {&engine_, &recorder_, &server_}) {
            process->kill();
            process->waitForFinished(3000);
        }
    }
    Q_DISABLE_COPY_MOVE(Room)

    /// What is heard in the next `seconds`.
    std::vector<qint16> listen(double seconds)
    {
        recorder_.readAll();
        QByteArray sound;
        const auto size = static_cast<qsizetype>(seconds * rate * sizeof(qint16));
        while (sound.size() < size && recorder_.waitForReadyRead(5000))
            sound += recorder_.readAll();
        std::vector<qint16> samples(static_cast<std::size_t>(sound.size()) / sizeof(qint16));
        std::memcpy(samples.data(), sound.constData(), samples.size() * sizeof(qint16));
        return samples;
    }

    void send(const QByteArray &line)
    {
        engine_.write(line);
        engine_.waitForBytesWritten();
    }

private:
    QTemporaryDir folder_;
    QProcess server_;
    QProcess recorder_;
    QProcess engine_;
};

/// When each beat begins, in seconds.
std::vector<double> beatsOf(const std::vector<qint16> &samples)
{
    constexpr int audible = 600;
    constexpr double silence = 0.12; // before a beat
    std::vector<double> beats;
    double last = -1;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (std::abs(samples[i]) < audible)
            continue;
        const double at = static_cast<double>(i) / rate;
        if (at - last > silence)
            beats.push_back(at);
        last = at;
    }
    return beats;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    kelo::bench::printMachine();
    Room room;
    static_cast<void>(room.listen(6)); // its greeting
    room.send("~metronome\n");
    static_cast<void>(room.listen(6)); // until it has found its step
    const std::vector<double> beats =
        beatsOf(room.listen(qEnvironmentVariableIsSet("KELO_BENCH_FULL") ? 300 : 60));
    if (beats.size() < 2)
        qFatal("nothing is heard");
    double worst = 0;
    int off = 0;
    for (std::size_t i = 1; i < beats.size(); ++i) {
        const double error = std::abs(beats[i] - beats[i - 1] - beat);
        worst = std::max(worst, error);
        off += error > steady;
    }
    print(u"beats heard"_s, static_cast<double>(beats.size()), u""_s);
    print(u"of them more than 2 ms off the one before"_s, off, u""_s);
    print(u"the worst"_s, worst * 1000, u"ms"_s);
    const double span = beats.back() - beats.front();
    print(u"drift"_s, (span / static_cast<double>(beats.size() - 1) / beat - 1) * 1e6, u"ppm"_s);
    return 0;
}
