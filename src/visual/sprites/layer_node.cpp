#include "visual/sprites/layer_node.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <cmath>

namespace kelo {

Sprite shadeBehind(const Label &label, double reach)
{
    constexpr double opacity = 0.85;
    const double whole = static_cast<double>(label.text.size()) * letterWidth * label.size;
    const double width = label.width > 0 ? std::min(whole, label.width) : whole;
    const double tall = label.size * (label.lines > 1 && whole > width ? 2.4 : 1.2);
    const double left = label.centred ? label.x - width / 2 : label.x;
    const double bottom = label.lines > 1 ? label.y - tall : label.y - label.size * 0.25;
    Sprite sprite = box(left - reach, bottom - reach, width + 2 * reach, tall + 2 * reach,
        colours::bg.faded(opacity));
    sprite.radius = sprite.feather = static_cast<float>(std::min(2 * reach, tall / 2 + reach));
    return sprite;
}

void LabelsNode::show(const LabelList &labels, const Canvas &canvas)
{
    const auto count = static_cast<std::size_t>(labels.size());
    for (; slots_.size() > count; slots_.pop_back()) {
        removeChildNode(slots_.back().node);
        delete slots_.back().node;
    }
    while (slots_.size() < count) {
        slots_.emplace_back().node = canvas.window.createImageNode();
        appendChildNode(slots_.back().node);
    }
    const QPointF origin(canvas.origin.x() - std::floor(canvas.origin.x()),
        canvas.origin.y() - std::floor(canvas.origin.y()));
    for (std::size_t i = 0; i < count; ++i) {
        Slot &slot = slots_[i];
        const Label &label = labels[static_cast<qsizetype>(i)];
        if (slot.label == label && slot.height == canvas.height && slot.pixels == canvas.pixels
            && slot.origin == origin)
            continue;
        slot = {label, canvas.height, canvas.pixels, origin, slot.node};
        draw(slot, canvas.window);
    }
}

void LabelsNode::draw(Slot &slot, QQuickWindow &window)
{
    const SetLabel label(slot.label, slot.height);
    // Whole pixels of the screen, so that the picture's are not blurred.
    const QRectF area = label.area();
    const QRect onScreen =
        QRectF(area.topLeft() * slot.pixels + slot.origin, area.size() * slot.pixels)
            .toAlignedRect();
    const QRectF place(
        (onScreen.topLeft() - slot.origin) / slot.pixels, QSizeF(onScreen.size()) / slot.pixels);
    QImage image(onScreen.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(slot.pixels, slot.pixels);
    painter.translate(-place.topLeft());
    label.paint(painter);
    painter.end();
    slot.node->setOwnsTexture(true);
    slot.node->setTexture(window.createTextureFromImage(image));
    slot.node->setFiltering(QSGTexture::Nearest);
    slot.node->setRect(place);
}

void LayersNode::show(const Picture &picture, const Canvas &canvas)
{
    while (layers_.size() > picture.size()) {
        const auto [sprites, labels] = layers_.back();
        removeChildNode(sprites);
        removeChildNode(labels);
        delete sprites;
        delete labels;
        layers_.pop_back();
    }
    while (layers_.size() < picture.size()) {
        layers_.emplace_back(new SpriteNode, new LabelsNode);
        appendChildNode(layers_.back().first);
        appendChildNode(layers_.back().second);
    }
    for (std::size_t i = 0; i < picture.size(); ++i) {
        layers_[i].first->show(picture[i].sprites, canvas.height, canvas.pixels);
        layers_[i].second->show(picture[i].labels, canvas);
    }
}

} // namespace kelo
