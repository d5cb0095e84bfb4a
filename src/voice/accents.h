#pragma once

#include "voice/phones.h"

namespace kelo {

/// `plain` and other ways in which speakers of English commonly say the same: those first that
/// differ least, at most `limit` in all, but never less than `plain`.
[[nodiscard]] QList<Phones> accentsOf(const QList<Phones> &plain, qsizetype limit);

} // namespace kelo
