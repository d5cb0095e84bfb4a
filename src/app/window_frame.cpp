#include "app/window_frame.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWindow>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString frameKey = u"KeloMain"_s;
const QString maximisedKey = u"KeloMainMaximised"_s;

constexpr QSize grip{200, 60}; // what must show of a window for the user to drag it back

} // namespace

QRect WindowFrame::placed(const QRect &wanted, std::span<const QRect> screens)
{
    if (screens.empty())
        return wanted;
    const bool reachable = std::ranges::any_of(screens, [&wanted](const QRect &screen) {
        const QSize shown = screen.intersected(wanted).size();
        return shown.width() >= grip.width() && shown.height() >= grip.height();
    });
    if (reachable)
        return wanted;
    const QRect &screen = screens.front();
    QRect frame(QPoint(), wanted.size().boundedTo(screen.size()));
    frame.moveCenter(screen.center());
    return frame;
}

void WindowFrame::restore(QWindow &window, const QSettings &settings)
{
    std::vector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.push_back(screen->availableGeometry());
    const QRect nowhere(QPoint(-100'000, -100'000), firstSize);
    const QRect kept = settings.value(frameKey, nowhere).toRect();
    window.setMinimumSize(smallest);
    window.setGeometry(placed(QRect(kept.topLeft(), kept.size().expandedTo(smallest)), screens));
    if (settings.value(maximisedKey).toBool())
        window.setWindowStates(Qt::WindowMaximized);
}

void WindowFrame::save(const QWindow &window, QSettings &settings)
{
    const bool maximised = window.windowStates().testFlag(Qt::WindowMaximized);
    settings.setValue(maximisedKey, maximised);
    if (!maximised && !window.windowStates().testFlag(Qt::WindowFullScreen))
        settings.setValue(frameKey, window.geometry());
}

} // namespace kelo
