#include "voice/voice_log_file.h"

#include "link/time_source.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr qint64 mostBytes = 1 << 20;

} // namespace

VoiceLogFile::VoiceLogFile(const QString &baseDir, const TimeSource &time)
    : path_(baseDir + "/voice-log.txt"_L1)
    , oldPath_(baseDir + "/voice-log.old.txt"_L1)
    , time_(time)
{
}

void VoiceLogFile::add(const QString &text) const
{
    QFile file(path_);
    if (!file.open(QIODevice::Append | QIODevice::ExistingOnly))
        return;
    if (file.size() > mostBytes) {
        file.close();
        QFile::remove(oldPath_);
        const bool kept = QFile::rename(path_, oldPath_);
        // In a folder that takes no new files the old lines go.
        if (!file.open(kept ? QIODevice::Append : QIODevice::WriteOnly | QIODevice::ExistingOnly))
            return;
    }
    file.write((time_.timeOfDay() + "  "_L1 + text + u'\n').toUtf8());
}

} // namespace kelo
