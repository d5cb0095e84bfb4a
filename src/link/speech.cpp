#include "link/speech.h"

#include "link/parse.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo {

namespace {

constexpr double secondsPerUnit = 0.06; // of a word whose duration is not known
constexpr double shortestWord = 0.12; // seconds
constexpr double runOnTime = 0.3; // seconds in which a late word lets the cursor creep one unit

double wordDuration(const Speech &speech)
{
    if (speech.wordTime > 0)
        return speech.wordTime;
    return std::max(static_cast<double>(speech.wordLen) * secondsPerUnit, shortestWord);
}

} // namespace

void Speech::begin(const QString &sentence, double now)
{
    caption = sentence;
    segments = cut(sentence);
    cursor = 0;
    ++mark;
    captionLive = true;
    spokenTo = 0;
    speaking = true;
    gotWord = false;
    sayStarted = now;
}

void Speech::word(qint64 from, qint64 length, double now)
{
    spokenTo = parse::saturatedSum(from, length);
    wordFrom = from;
    wordLen = length;
    wordAt = now;
    gotWord = true;
}

void Speech::end(double now)
{
    speaking = false;
    doneAt = now;
    spokenTo = caption.size();
}

qint64 Speech::spokenIndex(double now) const
{
    const qint64 length = caption.size();
    if (!speaking)
        return std::min(spokenTo, length);
    if (!gotWord)
        return 0;
    const double part = std::clamp((now - wordAt) / wordDuration(*this), 0.0, 1.0);
    const double spoken =
        static_cast<double>(wordFrom) + std::trunc(part * static_cast<double>(wordLen));
    // Compared as a double first: the engine's offsets may be absurd and must not overflow.
    if (spoken >= static_cast<double>(length))
        return length;
    return static_cast<qint64>(std::max(spoken, -1e18));
}

double Speech::spokenExact(double now) const
{
    const auto length = static_cast<double>(caption.size());
    if (!speaking)
        return length;
    if (!gotWord)
        return 0;
    const double duration = wordDuration(*this);
    const double elapsed = now - wordAt;
    const double part = std::clamp(elapsed / duration, 0.0, 1.0);
    const double runOn = std::clamp((elapsed - duration) / runOnTime, 0.0, 1.0);
    return std::min(
        static_cast<double>(wordFrom) + part * static_cast<double>(wordLen) + runOn, length);
}

double Speech::glide(double target, double now)
{
    cursor = kelo::glide(cursor, target, now - std::exchange(cursorAt, now));
    return cursor;
}

} // namespace kelo
