#pragma once

#include "app/overlay_rules.h"

class QWindow;

namespace kelo {

/// Whether the user can see anything of `window`, which may be null. What cannot be found out
/// counts as seen: a caption panel over the display itself is worse than none.
[[nodiscard]] MainWindow sightOf(const QWindow *window);

} // namespace kelo
