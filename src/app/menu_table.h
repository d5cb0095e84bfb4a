#pragma once

#include <QList>
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
    UseMicrophone,
    Larger,
    Smaller,
    NormalSize,
    GlobalKeys,
    Minimise,
    CloseWindow,
    HideWindow,
    Quit,
};

/// Something to choose among others of its kind.
struct MenuChoice {
    QString id;
    QString title;
};

/// The truth that the menus show, read anew each time one opens.
struct MenuFacts {
    QString assistant;
    bool listening = false;
    bool panel = true;
    bool login = false;
    bool globalKeys = false; ///< the desktop can give some
    QList<MenuChoice> microphones{}; ///< those that are there
    QString wantedMicrophone{}; ///< the id of the one to listen with; empty: the system's choice
};

/// One line of a menu.
struct MenuEntry {
    std::optional<MenuAction> action{}; ///< none: a line between groups, or a menu of its own
    QString title{};
    std::optional<bool> checked{}; ///< none: not a switch
    std::vector<MenuEntry> below{}; ///< what a menu of its own holds
    QString id{}; ///< what is chosen, where the action does not say it all
    bool shown = true;
};

/// The tray menu from top to bottom. Titles and marks depend on `facts`, the order does not.
[[nodiscard]] std::vector<MenuEntry> trayMenu(const MenuFacts &facts);

/// The menu of the main window. Titles name their keys after a tabulator.
[[nodiscard]] std::vector<MenuEntry> windowMenu(const MenuFacts &facts);

} // namespace kelo
