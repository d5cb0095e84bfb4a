#include "link/caption.h"

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

constexpr qsizetype shortestSentence = 14;
constexpr qsizetype shortestClause = 44;
constexpr qsizetype longestLine = 74;
constexpr qsizetype shortestLastLine = 12;

constexpr double secondsPerUnit = 0.06; // of a word whose duration is not known
constexpr double shortestWord = 0.12; // seconds
constexpr double runOnTime = 0.3; // seconds in which a late word lets the cursor creep one unit

constexpr double glideRate = 16.0; // per second
constexpr double longestGlide = 0.1; // seconds; a longer pause glides no further than this
constexpr double jumpBack = 3.0; // units

bool endsSentence(QChar c)
{
    return c == u'.' || c == u'!' || c == u'?';
}

bool endsClause(QChar c)
{
    return c == u',' || c == u':' || c == u';';
}

double wordDuration(const SpeechClock &speech)
{
    if (speech.wordTime > 0)
        return speech.wordTime;
    return std::max(static_cast<double>(speech.wordLen) * secondsPerUnit, shortestWord);
}

} // namespace

std::vector<Segment> cut(const QString &caption)
{
    std::vector<Segment> segments;
    qsizetype start = 0;
    qsizetype lastSpace = -1;
    const qsizetype size = caption.size();

    const auto close = [&](qsizetype end, qsizetype next) {
        segments.push_back({start, end - start});
        start = next;
    };
    for (qsizetype i = 0; i < size; ++i) {
        const QChar c = caption[i];
        const bool spaced = i + 1 == size || caption[i + 1] == u' ';
        const qsizetype length = i - start + 1;
        if (c == u' ')
            lastSpace = i;
        if (endsSentence(c) && spaced) {
            if (length >= shortestSentence)
                close(i + 1, i + 2);
        } else if (endsClause(c) && spaced) {
            if (length >= shortestClause)
                close(i + 1, i + 2);
        } else if (length >= longestLine && lastSpace > start) {
            close(lastSpace, lastSpace + 1);
        }
    }
    if (start < size)
        close(size, size);
    if (segments.empty())
        return {{0, size}};
    if (segments.size() > 1 && segments.back().length < shortestLastLine) {
        const Segment last = segments.back();
        segments.pop_back();
        segments.back().length = last.start + last.length - segments.back().start;
    }
    return segments;
}

qsizetype segmentIndex(const std::vector<Segment> &segments, double position)
{
    const double whole = std::trunc(position);
    const auto found = std::find_if(segments.rbegin(), segments.rend(),
        [whole](const Segment &s) { return static_cast<double>(s.start) <= whole; });
    return found == segments.rend() ? 0 : std::distance(found, segments.rend()) - 1;
}

qint64 spokenIndex(const SpeechClock &speech, double now)
{
    const qint64 length = speech.captionLength;
    if (!speech.speaking)
        return std::min(speech.spokenTo, length);
    if (!speech.gotWord)
        return 0;
    const double part = std::clamp((now - speech.wordAt) / wordDuration(speech), 0.0, 1.0);
    const double spoken = static_cast<double>(speech.wordFrom)
        + std::trunc(part * static_cast<double>(speech.wordLen));
    // Compared as a double first: the engine's offsets may be absurd and must not overflow.
    if (spoken >= static_cast<double>(length))
        return length;
    return static_cast<qint64>(std::max(spoken, -1e18));
}

double spokenExact(const SpeechClock &speech, double now)
{
    const auto length = static_cast<double>(speech.captionLength);
    if (!speech.speaking)
        return length;
    if (!speech.gotWord)
        return 0;
    const double duration = wordDuration(speech);
    const double elapsed = now - speech.wordAt;
    const double part = std::clamp(elapsed / duration, 0.0, 1.0);
    const double runOn = std::clamp((elapsed - duration) / runOnTime, 0.0, 1.0);
    return std::min(
        static_cast<double>(speech.wordFrom) + part * static_cast<double>(speech.wordLen) + runOn,
        length);
}

double glide(double cursor, double target, double dt)
{
    if (target < cursor - jumpBack)
        return target;
    const double eased = 1 - std::exp(-glideRate * std::clamp(dt, 0.0, longestGlide));
    return cursor + (target - cursor) * eased;
}

} // namespace kelo
