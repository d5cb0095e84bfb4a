// What voice control does with its microphone.

#include "voice/voice_control.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr double lookAgainAfter = 1.0; // seconds

} // namespace

// ---- the microphone ----

void VoiceControl::openMicrophone(bool quietly)
{
    const auto opened = [this] {
        listen();
        if (on) // listening may have found that it cannot work here
            startWatchdog();
    };
    if (setup_.microphone->isOpen()) {
        opened();
        return;
    }
    using Devices = QList<MicrophoneDevice>;
    setup_.microphone->discover().then(
        this, [this, turn = turn_, quietly, opened](const Devices &devices) {
            if (turn != turn_)
                return;
            if (attach(devices, quietly))
                opened();
            else
                lookAgain();
        });
}

/// Opens one of `devices`. While it is looked for again and again, only success is worth a line.
bool VoiceControl::attach(const QList<MicrophoneDevice> &devices, bool quietly)
{
    const auto failed = [this, quietly](const QString &line) {
        status = u"NO MICROPHONE"_s;
        if (!quietly)
            log(line);
        return false;
    };
    if (!quietly) {
        QStringList names;
        for (const MicrophoneDevice &device : devices)
            names.append(device.name);
        log("microphones found: "_L1 + (names.isEmpty() ? u"none"_s : names.join(", "_L1)));
    }
    const MicrophoneDevice *device = chosenMicrophone(devices);
    if (!device)
        return failed(u"could not open any microphone"_s);
    switch (
        setup_.microphone->open(*device, [this](const AudioBuffer &buffer) { captured(buffer); })) {
    case Microphone::Opening::NoInput:
        return failed(u"could not open any microphone"_s);
    case Microphone::Opening::NotAttached:
        return failed("could not attach "_L1 + device->name);
    case Microphone::Opening::Started:
        break;
    }
    micName_ = device->name;
    log("using microphone: "_L1 + micName_);
    return true;
}

void VoiceControl::lookAgain()
{
    retry_ = std::make_unique<QObject>();
    setup_.time.after(lookAgainAfter, retry_.get(), [this] { openMicrophone(true); });
}

void VoiceControl::lostMicrophone()
{
    if (!on)
        return;
    refresh_.reset();
    endSession();
    status = u"NO MICROPHONE"_s;
    level = 0;
    log("lost the microphone: "_L1 + micName_);
    lookAgain();
}

// ---- sound ----

void VoiceControl::captured(const AudioBuffer &buffer)
{
    {
        const std::lock_guard lock(feeding_);
        if (fed_)
            fed_->append(buffer);
    }
    if (const auto loudness = meter_.add(peakOf(buffer), setup_.time.now()))
        QMetaObject::invokeMethod(this, [this, loudness] { report(*loudness); });
}

void VoiceControl::report(const LevelReport &loudness)
{
    if (!on || !setup_.microphone->isOpen())
        return;
    level = loudness.shown();
    setup_.send(QString::asprintf("~lvl %.4f\n", loudness.peak));
    if (loudness.worthLogging()) {
        log(QString::asprintf("hearing sound: %lld buffers so far, recent peak %.3f",
            loudness.buffers, loudness.peak));
    }
}

} // namespace kelo
