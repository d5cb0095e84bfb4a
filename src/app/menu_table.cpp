#include "app/menu_table.h"

#include <QCoreApplication>

namespace kelo {

namespace {

struct Menu {
    Q_DECLARE_TR_FUNCTIONS(Menu)
};

/// What can be done to the main window.
std::vector<MenuEntry> ofTheWindow(const MenuFacts &facts)
{
    using enum MenuAction;
    return {
        {Larger, Menu::tr("Larger")},
        {Smaller, Menu::tr("Smaller")},
        {NormalSize, Menu::tr("Normal size")},
        {},
        {Minimise, Menu::tr("Minimise")},
        {CloseWindow, Menu::tr("Close")},
        {GlobalKeys, Menu::tr("Keys that reach me from everywhere…"), {}, {}, {}, facts.globalKeys},
    };
}

std::vector<MenuEntry> microphones(const MenuFacts &facts)
{
    using enum MenuAction;
    const QString &wanted = facts.wantedMicrophone;
    std::vector<MenuEntry> entries{
        {UseMicrophone, Menu::tr("As the system suggests"), wanted.isEmpty()}};
    for (const MenuChoice &each : facts.microphones)
        entries.push_back({UseMicrophone, each.title, each.id == wanted, {}, each.id});
    return entries;
}

const char *keyOf(MenuAction action)
{
    switch (action) {
    case MenuAction::Larger:
        return "\tCtrl++";
    case MenuAction::Smaller:
        return "\tCtrl+-";
    case MenuAction::NormalSize:
        return "\tCtrl+0";
    case MenuAction::Minimise:
        return "\tCtrl+M";
    case MenuAction::CloseWindow:
        return "\tCtrl+W";
    case MenuAction::HideWindow:
        return "\tCtrl+H";
    case MenuAction::Quit:
        return "\tCtrl+Q";
    default:
        return "";
    }
}

} // namespace

std::vector<MenuEntry> trayMenu(const MenuFacts &facts)
{
    using enum MenuAction;
    return {
        {OpenWindow, Menu::tr("Open the window")},
        {WelcomeAgain, Menu::tr("Change my name, city or wake word…")},
        {NaturalVoice, Menu::tr("Install the natural voice…")},
        {},
        {ToggleVoice, Menu::tr("Listen for “%1”").arg(facts.assistant), facts.listening},
        {TogglePanel, Menu::tr("Show the panel when %1 speaks").arg(facts.assistant), facts.panel},
        {ToggleLogin, Menu::tr("Start when I log in"), facts.login},
        {{}, Menu::tr("Microphone"), {}, microphones(facts)},
        {{}, Menu::tr("Window"), {}, ofTheWindow(facts)},
        {},
        {Quit, Menu::tr("Quit Kelo")},
    };
}

std::vector<MenuEntry> windowMenu(const MenuFacts &facts)
{
    using enum MenuAction;
    std::vector<MenuEntry> entries = ofTheWindow(facts);
    entries.push_back({});
    entries.push_back({HideWindow, Menu::tr("Hide Kelo")});
    entries.push_back({Quit, Menu::tr("Quit Kelo")});
    for (MenuEntry &entry : entries) {
        if (entry.action)
            entry.title += QLatin1StringView(keyOf(*entry.action));
    }
    return entries;
}

} // namespace kelo
