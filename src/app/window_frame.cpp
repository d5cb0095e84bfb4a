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
constexpr QSize border{12, 64}; // room for a frame around a window in the middle of the screen

} // namespace

QSize WindowFrame::smallestOn(QSize room)
{
    return smallest.boundedTo(room - border);
}

QRect WindowFrame::placed(const QRect &wanted, std::span<const QRect> screens)
{
    if (screens.empty())
        return wanted;
    const auto reachable = std::ranges::find_if(screens, [&wanted](const QRect &screen) {
        const QSize shown = screen.intersected(wanted).size();
        return shown.width() >= grip.width() && shown.height() >= grip.height();
    });
    const bool found = reachable != screens.end();
    const QRect &screen = found ? *reachable : screens.front();
    const QSize size = wanted.size().boundedTo(screen.size() - border);
    if (found && size == wanted.size())
        return wanted;
    QRect frame(QPoint(), size);
    frame.moveCenter(screen.center());
    return frame;
}

void WindowFrame::restore(QWindow &window, const QSettings &settings, double scale)
{
    std::vector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.push_back(screen->availableGeometry());
    const QRect first(QPoint(-100'000, -100'000), firstSize * scale); // nowhere
    const QRect kept = settings.value(frameKey, first).toRect();
    const QSize least = smallestOn(window.screen()->availableSize());
    // A tile on Wayland may be smaller; what may not become so is drawn beyond its edge there.
    if (!QGuiApplication::platformName().startsWith(u"wayland"_s))
        window.setMinimumSize(least);
    window.setGeometry(placed(QRect(kept.topLeft(), kept.size().expandedTo(least)), screens));
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
