#pragma once

#include "visual/motion/frame_clock.h"
#include "visual/motion/motion_time.h"
#include "visual/motion/scene_item.h"
#include "visual/notes/rain_scene.h"

#include <memory>

namespace kelo {

/// The falling-notes scene as an item. While it exists the link tells it of notes. While nothing
/// happens it comes to rest.
class RainItem : public kelo::SceneItem {
    Q_OBJECT
    Q_PROPERTY(QColor background READ background CONSTANT)
    Q_PROPERTY(double captionTop MEMBER captionTop_ NOTIFY captionTopChanged)
    QML_ELEMENT

public:
    [[nodiscard]] static QColor background();

Q_SIGNALS:
    void captionTopChanged();

protected:
    void linkSet(Link *link) override;
    bool advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override;
    [[nodiscard]] const SpriteList &sprites() const override;
    [[nodiscard]] LabelList texts() const override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    void disturb();

    std::unique_ptr<RainScene> scene_;
    FrameClock clock_;
    MotionTime motion_;
    SpriteList shown_; // what was drawn last, at rest
    double captionTop_ = RainScene::captionTop; // points
};

} // namespace kelo
