#include "voice/virtual_microphone.h"

#include "voice/wake_lab/speech_sample.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

#include <csignal>

using namespace Qt::StringLiterals;

namespace kelo::test {

namespace {

// A monitor on its own is no microphone. Without "norewinds" the first sound takes two seconds.
constexpr auto plug = "module-remap-source master=vmic.monitor source_name=mic "
                      "source_properties=device.description=VirtualMic"_L1;

} // namespace

VirtualMicrophone::VirtualMicrophone()
{
    qputenv("PULSE_SERVER", "unix:" + path("socket").toUtf8());
    qputenv("PULSE_RUNTIME_PATH", path("runtime").toUtf8());
    qputenv("PULSE_STATE_PATH", path("state").toUtf8());
    qputenv("PULSE_COOKIE", path("cookie").toUtf8());
}

VirtualMicrophone::~VirtualMicrophone()
{
    speaker_.kill();
    speaker_.waitForFinished();
    kill();
}

QString VirtualMicrophone::path(const char *name) const
{
    return folder_.filePath(QString::fromLatin1(name));
}

QString VirtualMicrophone::missing()
{
    QStringList programs;
    for (const auto program : {"pulseaudio"_L1, "pactl"_L1, "paplay"_L1, "espeak-ng"_L1}) {
        if (QStandardPaths::findExecutable(program).isEmpty())
            programs.append(program);
    }
    return programs.join(", "_L1);
}

bool VirtualMicrophone::start()
{
    QFile modules(path("modules"));
    if (!modules.open(QIODevice::WriteOnly))
        return false;
    modules.write(
        "load-module module-native-protocol-unix auth-anonymous=1 socket=" + path("socket").toUtf8()
        + "\nload-module module-null-sink sink_name=speakers norewinds=1"
          "\nload-module module-null-sink sink_name=vmic norewinds=1"
          "\nload-module "
        + QByteArray(plug.data(), plug.size()) + '\n');
    modules.close();
    server_.setStandardErrorFile(QProcess::nullDevice());
    server_.start(u"pulseaudio"_s,
        {u"-n"_s, u"-F"_s, modules.fileName(), u"--daemonize=no"_s, u"--use-pid-file=no"_s,
            u"--disable-shm=yes"_s, u"--exit-idle-time=-1"_s});
    for (QDeadlineTimer patience(5000); !patience.hasExpired(); QThread::msleep(20)) {
        if (control({u"info"_s}))
            return true;
    }
    return false;
}

void VirtualMicrophone::kill()
{
    server_.kill();
    server_.waitForFinished();
    QFile::remove(path("socket"));
}

void VirtualMicrophone::signal(int number) const
{
    if (server_.processId() > 0)
        ::kill(static_cast<pid_t>(server_.processId()), number);
}

void VirtualMicrophone::freeze() const
{
    signal(SIGSTOP);
}

void VirtualMicrophone::thaw() const
{
    signal(SIGCONT);
}

bool VirtualMicrophone::pull() const
{
    return control({u"unload-module"_s, u"module-remap-source"_s});
}

bool VirtualMicrophone::plugIn() const
{
    return control(QStringList{u"load-module"_s} + QString(plug).split(u' '));
}

bool VirtualMicrophone::hearSpeakers() const
{
    return control({u"load-module"_s, u"module-loopback"_s, u"source=speakers.monitor"_s,
        u"sink=vmic"_s, u"latency_msec=80"_s, u"adjust_time=0"_s});
}

bool VirtualMicrophone::speak(const QString &text, const QString &into)
{
    const QString file = path("speech.wav");
    if (!speakToFile(text, u"gmw/en-US"_s, 150, file))
        return false;
    speaker_.start(u"paplay"_s, {u"--latency-msec=30"_s, u"-d"_s, into, file});
    return speaker_.waitForStarted();
}

bool VirtualMicrophone::control(const QStringList &arguments)
{
    QProcess pactl;
    pactl.setStandardErrorFile(QProcess::nullDevice());
    pactl.start(u"pactl"_s, arguments);
    return pactl.waitForFinished(3000) && pactl.exitCode() == 0;
}

} // namespace kelo::test
