#include "link/caption.h"

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

constexpr qsizetype shortestSentence = 14;
constexpr qsizetype shortestClause = 44;
constexpr qsizetype longestLine = 74;
constexpr qsizetype shortestLastLine = 12;

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

double glide(double cursor, double target, double dt)
{
    if (target < cursor - jumpBack)
        return target;
    const double eased = 1 - std::exp(-glideRate * std::clamp(dt, 0.0, longestGlide));
    return cursor + (target - cursor) * eased;
}

} // namespace kelo
