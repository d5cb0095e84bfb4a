#pragma once

#include "app/action_menu.h"

#include <QPoint>
#include <QWindow>

namespace kelo {

/// The menu of the main window, in the display's own letters and colours.
class WindowMenu : public ActionMenu {
public:
    /// `facts` is asked for the truth each time the menu opens.
    explicit WindowMenu(const std::function<MenuFacts()> &facts);

    /// Opens at `place` in `window`, its texts `scale` times their usual size.
    void open(QWindow &window, QPoint place, double scale);
};

} // namespace kelo
