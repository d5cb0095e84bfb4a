#include "app/window_sight.h"

#include "app/x11.h"

#include <QWindow>

namespace kelo {

MainWindow sightOf(const QWindow *window)
{
    if (!window)
        return MainWindow::Missing;
    const bool shown = window->isVisible() && window->isExposed()
        && !window->windowStates().testFlag(Qt::WindowMinimized);
    return shown && !x11::outOfSight(*window) ? MainWindow::Seen : MainWindow::Unseen;
}

} // namespace kelo
