#pragma once

#include <QByteArrayView>

#include <array>
#include <string_view>

namespace kelo {

/// One keyword of the engine's lines, and the operation of `Lines` that handles what follows it on
/// a line that came at `now` (seconds of uptime).
template <typename Lines> struct Keyword {
    std::string_view keyword;
    void (Lines::*handle)(QByteArrayView rest, double now);
};

/// Has `lines` handle the line if its table knows the keyword; false otherwise.
template <typename Lines, std::size_t size>
bool handleBy(Lines &lines, const std::array<Keyword<Lines>, size> &table, std::string_view keyword,
    QByteArrayView rest, double now)
{
    for (const Keyword<Lines> &known : table) {
        if (known.keyword == keyword) {
            (lines.*known.handle)(rest, now);
            return true;
        }
    }
    return false;
}

} // namespace kelo
