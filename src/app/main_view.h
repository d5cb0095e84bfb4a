#pragma once

class QQuickView;

namespace kelo {

class Announcer;
class AppDelegate;
class DisplayScale;
class Link;
class VoiceControl;
class WelcomeQuestions;

/// What the display shows and talks to. `shell` and `announcer` may be null: then there are no
/// window shortcuts and nothing is announced.
struct MainViewParts {
    Link *link = nullptr;
    VoiceControl *voice = nullptr;
    WelcomeQuestions *questions = nullptr;
    DisplayScale *scale = nullptr;
    AppDelegate *shell = nullptr;
    Announcer *announcer = nullptr;
};

/// Fills `window` with the display: the console, and all that shows in its place or over it.
/// Aborts when that fails, since it is compiled into the program.
void fillWithMainView(QQuickView &window, const MainViewParts &parts);

} // namespace kelo
