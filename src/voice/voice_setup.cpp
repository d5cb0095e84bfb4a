#include "voice/voice_setup.h"

#include "link/paths.h"

namespace kelo {

VoiceSetup VoiceSetup::ofThisProcess()
{
    Link &link = Link::shared();
    return {&link, [&link](const QString &line) { link.send(line); }, Permissions::ofThisSystem(),
        Microphone::ofThisSystem(), Recogniser::ofThisSystem(), std::make_unique<QSettings>(),
        kelo::baseDir()};
}

VoiceSetup VoiceSetup::deaf()
{
    return {nullptr, {}, Permissions::ofThisSystem(), Microphone::none(), nullptr, nullptr, {}};
}

} // namespace kelo
