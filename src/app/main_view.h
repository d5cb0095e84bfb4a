#pragma once

class QQuickView;

namespace kelo {

class AppDelegate;
class Link;
class VoiceControl;

/// What the display shows and talks to. `shell` may be null: then there are no window shortcuts.
struct MainViewParts {
    Link *link = nullptr;
    VoiceControl *voice = nullptr;
    AppDelegate *shell = nullptr;
};

/// Fills `window` with the display: the console, and all that shows in its place or over it.
/// Aborts when that fails, since it is compiled into the program.
void fillWithMainView(QQuickView &window, const MainViewParts &parts);

} // namespace kelo
