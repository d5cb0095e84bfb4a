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

/// Cuts a caption into lines that can be read at a glance. Sentences end a line once it has
/// 14 units, clauses at 44, the last space at 74; a single long word is never broken.
/// Returns at least one segment; together they cover all but the spaces between them.
[[nodiscard]] std::vector<Segment> cut(const QString &caption);

/// Index of the segment that holds `position`; 0 when none does.
[[nodiscard]] qsizetype segmentIndex(const std::vector<Segment> &segments, double position);

/// Where a cursor at `cursor` stands `dt` seconds later on its way to `target`. It closes in
/// exponentially and jumps at once when the target went back, as it does for a new caption.
[[nodiscard]] double glide(double cursor, double target, double dt);

} // namespace kelo
