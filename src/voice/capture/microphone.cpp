#include "voice/capture/microphone.h"

#ifdef KELO_PULSE
#include "voice/capture/pulse_microphone.h"
#endif
#ifdef KELO_QT_MULTIMEDIA
#include "voice/capture/qt_microphone.h"
#endif

#include <algorithm>

namespace kelo {

namespace {

class NoMicrophone final : public Microphone {
public:
    QFuture<QList<MicrophoneDevice>> discover() override
    {
        return QtFuture::makeReadyFuture(QList<MicrophoneDevice>());
    }
    QFuture<Opening> open(const MicrophoneDevice & /*device*/, Sink /*sink*/) override
    {
        return QtFuture::makeReadyFuture(Opening::NoInput);
    }
    void close() override { }
};

} // namespace

const MicrophoneDevice *chosenMicrophone(
    const QList<MicrophoneDevice> &devices, const QString &preferred)
{
    using Rule = std::function<bool(const MicrophoneDevice &)>;
    const Rule rules[] = {
        [&](const MicrophoneDevice &device) { return device.id == preferred; },
        [](const MicrophoneDevice &device) { return device.builtIn; },
        // Some systems do not say what is built in, but name the computer.
        [](const MicrophoneDevice &device) {
            return device.name.contains(QLatin1String("macbook"), Qt::CaseInsensitive);
        },
        [](const MicrophoneDevice &device) { return device.systemDefault; },
        [](const MicrophoneDevice &) { return true; },
    };
    for (const Rule &rule : rules) {
        const auto found = std::find_if(devices.begin(), devices.end(), rule);
        if (found != devices.end())
            return &*found;
    }
    return nullptr;
}

std::unique_ptr<Microphone> Microphone::ofThisSystem()
{
#ifdef KELO_PULSE
    if (auto pulse = std::make_unique<PulseMicrophone>(); pulse->isWorking())
        return pulse;
#endif
#ifdef KELO_QT_MULTIMEDIA
    return std::make_unique<QtMicrophone>();
#else
    return none();
#endif
}

std::unique_ptr<Microphone> Microphone::none()
{
    return std::make_unique<NoMicrophone>();
}

} // namespace kelo
