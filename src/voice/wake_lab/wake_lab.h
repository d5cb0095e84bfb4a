#pragma once

#include "voice/recognition/recogniser.h"

#include <QString>

#include <memory>

/// Measures how well an assistant's name is heard: has a synthesiser say sentences with it in
/// several voices, runs them through the recogniser, plain and taught, and writes down what came
/// out. Needs neither a display nor a sound device.
namespace kelo::WakeLab {

/// Writes the report to `out`, anew with every line. `quick` leaves out the taught pass. Blocks for
/// minutes, needs the application object. Returns the process's exit status: 1 when the report
/// could not be written or nothing could be measured.
int run(const QString &out, const QString &name, bool quick,
    std::unique_ptr<Recogniser> recogniser = Recogniser::ofThisSystem());

} // namespace kelo::WakeLab
