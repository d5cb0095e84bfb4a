#pragma once

#include "visual/motion/motion_time.h"
#include "visual/motion/scene_item.h"
#include "visual/ring/core_scene.h"

namespace kelo {

/// The ring scene as an item. While nothing happens it comes to rest.
class CoreItem : public kelo::SceneItem {
    Q_OBJECT
    QML_ELEMENT

public:
    [[nodiscard]] const CoreScene &scene() const { return scene_; }

protected:
    void linkSet(Link *link) override;
    bool advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override;
    [[nodiscard]] const SpriteList &sprites() const override { return scene_.sprites(); }
    [[nodiscard]] LabelList texts() const override { return scene_.labels(); }
    void paint(QPainter &painter) const override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    class Node;

    void disturb();

    CoreScene scene_;
    MotionTime motion_;
};

} // namespace kelo
