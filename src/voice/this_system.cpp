// Which of the implementations beside this file are used here.

#include "voice/microphone.h"
#include "voice/recogniser.h"

#ifdef KELO_PULSE
#include "voice/pulse_microphone.h"
#endif
#ifdef KELO_QT_MULTIMEDIA
#include "voice/qt_microphone.h"
#endif
#ifdef KELO_POCKETSPHINX
#include "voice/sphinx_recogniser.h"
#endif

namespace kelo {

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

std::unique_ptr<Recogniser> Recogniser::ofThisSystem()
{
#ifdef KELO_POCKETSPHINX
    return std::make_unique<SphinxRecogniser>(QStringLiteral(KELO_POCKETSPHINX));
#else
    return nullptr;
#endif
}

} // namespace kelo
