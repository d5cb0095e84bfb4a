#pragma once

#include <QString>

/// Measures how well an assistant's name is heard: has a synthesiser say sentences with it in
/// several voices, runs them through the recogniser, plain and taught, and writes down what came
/// out. Needs neither a display nor a sound device.
namespace kelo::WakeLab {

/// Writes the report to `out`, anew after every stage. `quick` leaves out the taught pass.
/// Blocks for minutes, needs the application object; returns the process's exit status.
int run(const QString &out, const QString &name, bool quick);

} // namespace kelo::WakeLab
