#pragma once

#include "hud/focus_keeper.h"

#include <QString>
#include <Qt>

namespace kelo {

/// A key that went down in the main window.
struct KeyPress {
    int key = 0; ///< a Qt::Key
    Qt::KeyboardModifiers modifiers;
    QString text; ///< what it types, modifiers applied
    bool repeated = false; ///< it is being held down
};

/// The state of the display that decides what a key means.
struct KeyContext {
    bool welcome = false; ///< the first-run questions show
    FocusKeeper::Kind focus = FocusKeeper::Kind::Nothing; ///< what the keyboard focus is on
    bool typing = false; ///< the engine is taking free text
    bool visual = false; ///< the visualiser shows
};

/// What a key press leads to. All but `PassOn` consume the key;
/// `OfferToWelcome` consumes it when the questions do.
struct KeyAction {
    enum class Kind {
        PassOn, ///< to the control with the keyboard focus, or to a shortcut
        Ignore,
        OfferToWelcome,
        LeaveControls,
        LeaveVisualiser,
        ToggleVisualiser,
        ChooseFile,
        Send, ///< `text` to the engine
    };
    Kind kind = Kind::PassOn;
    QString text;

    friend bool operator==(const KeyAction &, const KeyAction &) = default;
};

/// The one rule by which plain keystrokes reach the engine, the visualiser or the controls.
[[nodiscard]] KeyAction keyAction(const KeyPress &press, const KeyContext &context);

} // namespace kelo
