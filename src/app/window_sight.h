#pragma once

class QWindow;

namespace kelo {

/// What the user sees of a window.
enum class WindowSight {
    Missing, ///< there is no window
    Seen, ///< at least a part of it
    Unseen, ///< closed, minimised, on another desktop or wholly covered
};

/// What the user sees of `window`, which may be null. What cannot be found out counts as seen: a
/// caption panel over the display itself is worse than none.
[[nodiscard]] WindowSight sightOf(const QWindow *window);

} // namespace kelo
