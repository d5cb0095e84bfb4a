#pragma once

#include <QString>

namespace kelo {

class TimeSource;

/// The voice log, a text file that the user can read and send in: what voice control does and why
/// it does not listen. Whoever wants one has to make it; without it lines are dropped.
class VoiceLogFile {
public:
    /// `baseDir` is the data directory.
    VoiceLogFile(const QString &baseDir, const TimeSource &time);

    /// Appends "HH:mm:ss", two spaces, `text`. A log that has grown beyond a mebibyte is kept as
    /// "voice-log.old.txt", in place of an earlier one, and begun anew.
    void add(const QString &text) const;

private:
    QString path_;
    QString oldPath_;
    const TimeSource &time_;
};

} // namespace kelo
