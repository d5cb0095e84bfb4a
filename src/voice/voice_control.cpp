#include "voice/voice_control.h"

#include <QCoreApplication>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(voiceLog, "kelo.voice")

namespace kelo {

VoiceControl::VoiceControl(QObject *parent)
    : QObject(parent)
{
}

VoiceControl &VoiceControl::shared()
{
    static auto *control = new VoiceControl(QCoreApplication::instance());
    return *control;
}

void VoiceControl::begin()
{
    qCInfo(voiceLog) << "there is no listening in this build";
}

void VoiceControl::stop()
{
    on = false;
}

} // namespace kelo
