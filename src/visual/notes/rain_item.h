#pragma once

#include "visual/motion/frame_timing.h"
#include "visual/motion/scene_item.h"
#include "visual/notes/rain_scene.h"

#include <memory>

namespace kelo {

/// The falling-notes scene as an item. While it exists the link tells it of notes. It is
/// decoration: screen readers pass it by.
class RainItem : public kelo::SceneItem {
    Q_OBJECT
    Q_PROPERTY(double captionTop MEMBER captionTop_ NOTIFY captionTopChanged)
    Q_PROPERTY(double textsTop MEMBER textsTop_ NOTIFY textsTopChanged)
    QML_NAMED_ELEMENT(Visualiser)

public:
    [[nodiscard]] const Picture &picture() const override;

Q_SIGNALS:
    void captionTopChanged();
    void textsTopChanged();

protected:
    void linkSet(Link &link) override;
    void linkGone() override;
    void advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override;
    QSGNode *updateNode(QSGNode *old) override;
    void paint(QPainter &painter) const override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    class Node;

    void disturb();

    std::unique_ptr<RainScene> scene_;
    FrameClock clock_;
    MotionTime motion_;
    double captionTop_ = RainScene::captionTop; // points
    double textsTop_ = 0; // points
};

} // namespace kelo
