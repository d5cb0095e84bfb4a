#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace kelo {

/// What an entry of the tray menu does.
enum class TrayAction {
    OpenWindow,
    WelcomeAgain,
    NaturalVoice,
    ToggleVoice,
    TogglePanel,
    ToggleLogin,
    Quit,
};

/// The truth that the menu shows, read anew each time it opens.
struct TrayFacts {
    QString assistant;
    bool listening = false;
    bool panel = true;
    bool login = false;
};

/// One line of the tray menu.
struct TrayEntry {
    std::optional<TrayAction> action; ///< none: a line between groups
    QString title;
    std::optional<bool> checked; ///< none: not a switch
};

/// The tray menu from top to bottom. Titles and marks depend on `facts`, the order does not.
[[nodiscard]] std::vector<TrayEntry> trayMenu(const TrayFacts &facts);

} // namespace kelo
