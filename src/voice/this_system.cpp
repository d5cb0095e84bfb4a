// Which of the implementations beside this file are used here.

#include "voice/microphone.h"
#include "voice/recogniser.h"

#ifdef KELO_PULSE
#include "voice/pulse_microphone.h"
#endif
#ifdef KELO_POCKETSPHINX
#include "voice/sphinx_recogniser.h"
#endif

namespace kelo {

namespace {

class NoMicrophone final : public Microphone {
public:
    QFuture<QList<MicrophoneDevice>> discover() override
    {
        return QtFuture::makeReadyFuture(QList<MicrophoneDevice>());
    }
    Opening open(const MicrophoneDevice & /*device*/, Sink /*sink*/) override
    {
        return Opening::NoInput;
    }
    void close() override { }
    [[nodiscard]] bool isOpen() const override { return false; }
};

} // namespace

std::unique_ptr<Microphone> Microphone::ofThisSystem()
{
#ifdef KELO_PULSE
    return std::make_unique<PulseMicrophone>();
#else
    return std::make_unique<NoMicrophone>();
#endif
}

std::unique_ptr<Recogniser> Recogniser::ofThisSystem()
{
#ifdef KELO_POCKETSPHINX
    return std::make_unique<SphinxRecogniser>(QStringLiteral(KELO_POCKETSPHINX));
#else
    return nullptr;
#endif
}

} // namespace kelo
