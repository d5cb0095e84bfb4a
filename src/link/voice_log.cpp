#include "link/voice_log.h"

namespace kelo {

void VoiceLog::add(const QString &timeOfDay, const QString &text, qsizetype most)
{
    lines.append({++lastId, timeOfDay, text});
    if (lines.size() > most)
        lines.remove(0, lines.size() - most);
}

} // namespace kelo
