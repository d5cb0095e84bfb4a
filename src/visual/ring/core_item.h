#pragma once

#include "visual/motion/motion_time.h"
#include "visual/motion/scene_item.h"
#include "visual/ring/core_scene.h"

namespace kelo {

/// The ring scene as an item. It is decoration: screen readers pass it by.
class CoreItem : public kelo::SceneItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Core)

public:
    /// What turns and what is written; the ring and its dial are drawn besides.
    [[nodiscard]] const Picture &picture() const override { return scene_.picture(); }

protected:
    void linkSet(Link &link) override;
    void advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override;
    void paint(QPainter &painter) const override;
    QSGNode *updateNode(QSGNode *old) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    class Node;

    void disturb();

    CoreScene scene_;
    MotionTime motion_;
};

} // namespace kelo
