#include "app/kelo_icon.h"

#include "hud/theme.h"

#include <QPainter>

#include <array>

namespace kelo {

namespace {

// As in packaging/app.kelo.assistant.svg: a disc of 64 units, seven strokes of these heights.
constexpr double units = 64;
constexpr std::array strokes{8.0, 20.0, 34.0, 14.0, 28.0, 18.0, 8.0};
constexpr double pitch = 6.5;
constexpr double strokeWidth = 4;

QPixmap drawn(int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / units, side / units);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Hud::green());
    painter.drawEllipse(QRectF(2, 2, units - 4, units - 4));
    painter.setBrush(Hud::bg());
    double x = units / 2 - pitch * (static_cast<double>(strokes.size()) - 1) / 2;
    for (const double height : strokes) {
        painter.drawRoundedRect(
            QRectF(x - strokeWidth / 2, (units - height) / 2, strokeWidth, height), 2, 2);
        x += pitch;
    }
    return pixmap;
}

} // namespace

QIcon keloIcon()
{
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(drawn(side));
    return icon;
}

} // namespace kelo
