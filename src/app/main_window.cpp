#include "app/main_window.h"

#include "app/kelo_icon.h"
#include "app/window_frame.h"
#include "visual/motion/frame_pacer.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelo {

MainWindow::MainWindow(QSettings &settings, double scale)
    : settings_(settings)
{
    setTitle(u"Kelo"_s);
    setIcon(keloIcon());
    WindowFrame::restore(*this, settings_, scale);
    // A window manager reports each step of a drag; the last one counts.
    placeTimer_.setSingleShot(true);
    placeTimer_.setInterval(500ms);
    connect(&placeTimer_, &QTimer::timeout, this, &MainWindow::keepPlace);
    connect(&sightTimer_, &QTimer::timeout, this, &MainWindow::look);
    connect(this, &QWindow::activeChanged, this, &MainWindow::look);
    sightTimer_.start(1s);
}

void MainWindow::bringForward()
{
    if (windowStates().testFlag(Qt::WindowMinimized))
        setWindowStates(windowStates() & ~Qt::WindowMinimized);
    setVisible(true);
    raise();
    requestActivate();
}

void MainWindow::minimise()
{
    setWindowStates(windowStates() | Qt::WindowMinimized);
}

void MainWindow::setFullScreen(bool on)
{
    if (isVisible())
        setWindowStates(windowStates().setFlag(Qt::WindowFullScreen, on));
}

void MainWindow::keepPlace()
{
    WindowFrame::save(*this, settings_);
}

bool MainWindow::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (keyTaker_ && keyTaker_(*static_cast<QKeyEvent *>(event)))
            return true;
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (isVisible())
            placeTimer_.start();
        break;
    case QEvent::Hide:
        keepPlace();
        break;
    case QEvent::Close:
        Q_EMIT closed();
        break;
    default:
        break;
    }
    return QQuickView::event(event);
}

void MainWindow::look()
{
    FramePacer::setCovered(*this, isExposed() && sightOf(this) == WindowSight::Unseen);
}

} // namespace kelo
