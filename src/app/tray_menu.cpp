#include "app/tray_menu.h"

#include <QCoreApplication>

namespace kelo {

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("TrayMenu", source);
}

} // namespace

std::vector<TrayEntry> trayMenu(const TrayFacts &facts)
{
    using enum TrayAction;
    return {
        {OpenWindow, text("Open the window"), {}},
        {WelcomeAgain, text("Change my name, city or wake word…"), {}},
        {NaturalVoice, text("Install the natural voice…"), {}},
        {},
        {ToggleVoice, text("Listen for “%1”").arg(facts.assistant), facts.listening},
        {TogglePanel, text("Show the panel when %1 speaks").arg(facts.assistant), facts.panel},
        {ToggleLogin, text("Start when I log in"), facts.login},
        {},
        {Quit, text("Quit Kelo"), {}},
    };
}

} // namespace kelo
