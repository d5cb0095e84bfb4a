#pragma once

#include <QString>

#include <functional>

/// How the benchmarks measure and what they print.
namespace kelo::bench {

/// Names the machine and the build above a table.
void printMachine();

/// A row: what was measured, the figure, its unit.
void print(const QString &what, double figure, const QString &unit);

/// Runs `work`, which does `count` things, and returns how many it does a second: the best of
/// several runs, since whatever disturbs a run only slows it down.
[[nodiscard]] double perSecond(double count, const std::function<void()> &work);

/// Memory of a process that only it uses and that is not backed by a file, in bytes.
[[nodiscard]] double privateMemory(const QString &process = QStringLiteral("self"));

} // namespace kelo::bench
