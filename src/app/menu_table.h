#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace kelo {

/// What an entry of a menu does.
enum class MenuAction {
    OpenWindow,
    WelcomeAgain,
    NaturalVoice,
    ToggleVoice,
    TogglePanel,
    ToggleLogin,
    Larger,
    Smaller,
    NormalSize,
    Minimise,
    CloseWindow,
    HideWindow,
    Quit,
};

/// The truth that the menus show, read anew each time one opens.
struct MenuFacts {
    QString assistant;
    bool listening = false;
    bool panel = true;
    bool login = false;
};

/// One line of a menu.
struct MenuEntry {
    std::optional<MenuAction> action{}; ///< none: a line between groups, or a menu of its own
    QString title{};
    std::optional<bool> checked{}; ///< none: not a switch
    std::vector<MenuEntry> below{}; ///< what a menu of its own holds
};

/// The tray menu from top to bottom. Titles and marks depend on `facts`, the order does not.
[[nodiscard]] std::vector<MenuEntry> trayMenu(const MenuFacts &facts);

/// The menu of the main window. Titles name their keys after a tabulator.
[[nodiscard]] std::vector<MenuEntry> windowMenu();

} // namespace kelo
