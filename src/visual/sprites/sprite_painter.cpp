#include "visual/sprites/sprite_painter.h"

#include <QImage>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kelo {

namespace {

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
    painter.drawArc(circle, static_cast<int>(degrees(sprite.angle - reach) * 16),
        static_cast<int>(degrees(2 * reach) * 16));
}

/// A soft light: a corner's fading circle, cut in four and drawn apart as far as the light is long.
void paintSoft(QPainter &painter, const Sprite &sprite)
{
    const int reach = std::max(static_cast<int>(std::ceil(sprite.feather)), 1);
    QImage light(2 * reach, 2 * reach, QImage::Format_ARGB32_Premultiplied);
    light.fill(Qt::transparent);
    QRadialGradient fading(reach, reach, reach);
    fading.setColorAt(0, shown(sprite.top));
    fading.setColorAt(1, shown(sprite.top.faded(0)));
    QPainter(&light).fillRect(light.rect(), fading);

    // Along each axis: two ends, and the light's middle stretched between them.
    struct Part {
        double from, length;
        int ofLight, taken;
    };
    const auto partsOf = [&](double half) {
        const double end = std::min<double>(sprite.feather, half);
        return std::array<Part, 3>{{{-half, end, 0, reach},
            {-half + end, 2 * (half - end), reach, 0}, {half - end, end, reach, reach}}};
    };
    for (const Part &across : partsOf(sprite.halfWidth)) {
        for (const Part &down : partsOf(sprite.halfHeight)) {
            if (across.length <= 0 || down.length <= 0)
                continue;
            painter.drawImage(QRectF(across.from, down.from, across.length, down.length), light,
                QRectF(across.ofLight, down.ofLight, std::max(across.taken, 1),
                    std::max(down.taken, 1)));
        }
    }
}

QBrush brush(const Sprite &sprite)
{
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
        } else if (sprite.feather > 0) {
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            paintSoft(painter, sprite);
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

void paintLayer(QPainter &painter, const Layer &layer, double height)
{
    paintSprites(painter, layer.sprites, height);
    for (const Label &label : layer.labels)
        SetLabel(label, height).paint(painter);
}

} // namespace kelo
