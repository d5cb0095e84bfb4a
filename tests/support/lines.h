#pragma once

#include <QStringList>

#include <vector>

namespace kelo::test {

/// Numbers in a line, two decimals each.
[[nodiscard]] QString numbersOf(const std::vector<double> &numbers);

/// Whether two lines are the same but for how another processor rounds: numbers may be off by a
/// hundredth or a thousandth of their own, those after "@", which are places, by half a point.
[[nodiscard]] bool alike(const QString &line, const QString &other);

/// Where lines differ from those kept in that file; nothing when they are alike. Writes the file
/// anew where the environment asks for it with `variable`.
[[nodiscard]] QString unlikeLines(
    const QStringList &lines, const QString &file, const char *variable);

} // namespace kelo::test
