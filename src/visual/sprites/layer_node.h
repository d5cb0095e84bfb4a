#pragma once

#include "visual/sprites/sprite_node.h"
#include "visual/sprites/text.h"

#include <vector>

class QQuickWindow;
class QSGImageNode;

namespace kelo {

/// Shapes, and texts over them.
struct Layer {
    SpriteList sprites;
    LabelList labels;

    friend bool operator==(const Layer &, const Layer &) = default;
};

/// What a scene shows: layers, later ones in front.
using Picture = std::vector<Layer>;

/// A shade with soft edges, to read the label over what passes there; it dies away over `reach`
/// points around the letters.
[[nodiscard]] Sprite shadeBehind(const Label &label, double reach);

/// Where an item's nodes draw.
struct Canvas {
    QQuickWindow &window;
    double height; ///< of the item, points
    double pixels; ///< of the screen, for a point of the item
    QPointF origin; ///< of the item on the screen, in pixels
};

/// Draws texts. Each is made into a picture when it changes. Lives on the render thread.
class LabelsNode final : public QSGNode {
public:
    void show(const LabelList &labels, const Canvas &canvas);

private:
    struct Slot {
        Label label;
        double height = 0;
        double pixels = 0;
        QPointF origin; // within a pixel
        QSGImageNode *node = nullptr;
    };

    static void draw(Slot &slot, QQuickWindow &window);

    std::vector<Slot> slots_;
};

/// Draws layers. Lives on the render thread.
class LayersNode final : public QSGNode {
public:
    void show(const Picture &picture, const Canvas &canvas);

private:
    std::vector<std::pair<SpriteNode *, LabelsNode *>> layers_; // children
};

} // namespace kelo
