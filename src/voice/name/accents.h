#pragma once

#include "voice/language/phones.h"

namespace kelo {

/// `plain` and what speakers of English commonly make of one of its sounds; at most `limit` in all,
/// but never less than `plain`. One sound only: where several change, short names grow like words
/// that are said all the time.
[[nodiscard]] QList<Phones> accentsOf(const QList<Phones> &plain, qsizetype limit);

} // namespace kelo
