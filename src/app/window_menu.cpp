#include "app/window_menu.h"

#include "hud/theme.h"

using namespace Qt::StringLiterals;

namespace kelo {

WindowMenu::WindowMenu(const std::function<MenuFacts()> &facts)
    : ActionMenu([facts] { return windowMenu(facts()); })
{
}

void WindowMenu::open(QWindow &window, QPoint place, double scale)
{
    setFont(Hud::mono(13 * scale));
    setStyleSheet(u"QMenu { background: %1; color: %2; border: 1px solid %3; }"
                  "QMenu::item { padding: 0.4em 1.2em; }"
                  "QMenu::item:selected { background: %3; color: %1; }"_s.arg(
                      Hud::bg().name(), Hud::shared().soft().name(), Hud::green().name()));
    winId(); // makes the window behind it, so that it can be tied to ours
    windowHandle()->setTransientParent(&window);
    popup(window.mapToGlobal(place));
}

} // namespace kelo
