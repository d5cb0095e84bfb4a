#pragma once

#include "voice/phones.h"

namespace kelo {

/// `phones` and other ways in which speakers of English commonly say the same; `phones` first, at
/// most `limit` in all.
[[nodiscard]] QList<Phones> accentsOf(const Phones &phones, qsizetype limit);

} // namespace kelo
