#include "visual/sprites/sprite_painter.h"

#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <numbers>

namespace kelo {

namespace {

constexpr double hazeLight = 0.3; // of a long glow, which is painted even

double degrees(double radians)
{
    return radians * 180 / std::numbers::pi;
}

QColor shown(const Colour &colour)
{
    return colour.faded(1 / std::max(colour.alpha, 1.0F)).toQColor();
}

void paintBent(QPainter &painter, const Sprite &sprite)
{
    const QRectF circle(-sprite.bend, -sprite.bend, 2 * sprite.bend, 2 * sprite.bend);
    const double reach =
        std::min<double>((sprite.halfWidth - sprite.radius) / sprite.bend, std::numbers::pi);
    painter.setPen(QPen(shown(sprite.top), sprite.halfHeight * 2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(circle, static_cast<int>(degrees(sprite.angle - reach) * 16),
        static_cast<int>(degrees(2 * reach) * 16));
}

QBrush brush(const Sprite &sprite)
{
    const bool round = sprite.feather > 0 && sprite.feather >= sprite.halfWidth
        && sprite.feather >= sprite.halfHeight;
    if (round) {
        QRadialGradient light(0, 0, sprite.feather);
        light.setColorAt(0, shown(sprite.top));
        light.setColorAt(1, shown(sprite.top.faded(0)));
        return light;
    }
    if (sprite.feather > 0)
        return shown(sprite.top.faded(hazeLight));
    if (sprite.top == sprite.bottom)
        return shown(sprite.top);
    QLinearGradient light(0, -sprite.halfHeight, 0, sprite.halfHeight);
    light.setColorAt(0, shown(sprite.top));
    light.setColorAt(1, shown(sprite.bottom));
    return light;
}

} // namespace

void paintSprites(QPainter &painter, std::span<const Sprite> sprites, double height)
{
    for (const Sprite &sprite : sprites) {
        painter.save();
        painter.translate(sprite.x, height - sprite.y);
        painter.setCompositionMode(sprite.additive ? QPainter::CompositionMode_Plus
                                                   : QPainter::CompositionMode_SourceOver);
        painter.setRenderHint(
            QPainter::Antialiasing, sprite.radius > 0 || sprite.angle != 0 || sprite.bend > 0);
        if (sprite.bend > 0) {
            paintBent(painter, sprite);
        } else {
            painter.rotate(-degrees(sprite.angle));
            painter.setPen(Qt::NoPen);
            painter.setBrush(brush(sprite));
            painter.drawRoundedRect(QRectF(-sprite.halfWidth, -sprite.halfHeight,
                                        2 * sprite.halfWidth, 2 * sprite.halfHeight),
                sprite.radius, sprite.radius);
        }
        painter.restore();
    }
}

} // namespace kelo
