#pragma once

#include <QString>

class QWindow;

/// What X11 says of windows and the desktop. Where this process does not talk to X11, each answers
/// as if there were nothing to tell.
namespace kelo::x11 {

/// This process talks to X11.
[[nodiscard]] bool available();
/// Something composes the screen, so a window may be transparent. True without X11.
[[nodiscard]] bool composited();
/// `window` is on another desktop, or other windows hide all of it.
[[nodiscard]] bool outOfSight(const QWindow &window);
/// There is a tray of the old kind, which embeds icons.
[[nodiscard]] bool hasTray();
/// A native event, as an event filter gets it, says that such a tray has just come.
[[nodiscard]] bool announcesTray(const void *event);

} // namespace kelo::x11
