#pragma once

#include "composing/score.h"

#include <string>

namespace kelo::engine {

/// The score as MusicXML 3.1 for notation programs, a staff a part; drums are left out. Notes that
/// do not fit one written value, or cross a bar line, are tied.
[[nodiscard]] std::string musicXml(const Score &score);

} // namespace kelo::engine
