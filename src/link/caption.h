#pragma once

#include <QString>

#include <vector>

namespace kelo {

/// A run of UTF-16 code units of a caption.
struct Segment {
    qsizetype start = 0;
    qsizetype length = 0;

    friend bool operator==(const Segment &, const Segment &) = default;
};

/// How far the assistant has come in its sentence. Offsets count UTF-16 code units of the
/// caption, times are seconds of uptime.
struct SpeechClock {
    qsizetype captionLength = 0;
    bool speaking = false;
    qint64 spokenTo = 0; ///< what the engine last reported as spoken
    bool gotWord = false; ///< a word timing has arrived for this caption
    double wordAt = 0; ///< when the last one arrived
    double wordTime = 0; ///< that word's duration in seconds; 0 when the engine did not say
    qint64 wordFrom = 0;
    qint64 wordLen = 0;
};

/// Cuts a caption into lines that can be read at a glance. Sentences end a line once it has
/// 14 units, clauses at 44, the last space at 74; a single long word is never broken.
/// Returns at least one segment; together they cover all but the spaces between them.
[[nodiscard]] std::vector<Segment> cut(const QString &caption);

/// Index of the segment that holds `position`; 0 when none does.
[[nodiscard]] qsizetype segmentIndex(const std::vector<Segment> &segments, double position);

/// Whole units spoken at `now`; never more than the caption has.
[[nodiscard]] qint64 spokenIndex(const SpeechClock &speech, double now);

/// Units spoken at `now`, with a fraction: interpolated through the word being spoken, then
/// creeping up to one unit further while the next word is late. Never exceeds the caption.
[[nodiscard]] double spokenExact(const SpeechClock &speech, double now);

/// Where a cursor at `cursor` stands `dt` seconds later on its way to `target`. It closes in
/// exponentially and jumps at once when the target went back, as it does for a new caption.
[[nodiscard]] double glide(double cursor, double target, double dt);

} // namespace kelo
