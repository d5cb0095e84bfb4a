#pragma once

#include "link/caption.h"

#include <span>

namespace kelo {

/// What the assistant says, and how far it has come. Offsets count UTF-16 code units of the
/// caption, times are seconds of uptime.
struct Speech {
    QString caption; ///< the sentence
    std::vector<Segment> segments; ///< the caption in lines that can be read at a glance
    bool captionLive = false; ///< the caption is on screen
    bool speaking = false;
    qint64 spokenTo = 0; ///< what the engine last reported as spoken
    double sayStarted = 0; ///< when the sentence came
    double doneAt = 0; ///< when the last sentence ended
    bool gotWord = false; ///< a word timing has arrived for this sentence
    double wordAt = 0; ///< when the last one arrived
    double wordTime = 0; ///< that word's duration in seconds; 0 when the engine did not say
    qint64 wordFrom = 0;
    qint64 wordLen = 0;
    qint64 mark = 0; ///< serial number of the sentence
    double cursor = 0; ///< where the caption's cursor stands
    double cursorAt = 0; ///< when it was last moved

    void begin(const QString &sentence, double now);
    /// The word of `length` units at `from` is being spoken, for `wordTime`.
    void word(qint64 from, qint64 length, double now);
    void end(double now);

    /// When the last word began, or the sentence before its first word.
    [[nodiscard]] double lastSound() const { return gotWord ? wordAt : sayStarted; }

    /// Whole units spoken at `now`; never more than the caption has.
    [[nodiscard]] qint64 spokenIndex(double now) const;
    /// Units spoken at `now`, with a fraction: interpolated through the word being spoken, then
    /// creeping up to one unit further while the next word is late. Never exceeds the caption.
    [[nodiscard]] double spokenExact(double now) const;

    /// Moves the cursor on towards `target` and returns where it is.
    double glide(double target, double now);
};

} // namespace kelo
