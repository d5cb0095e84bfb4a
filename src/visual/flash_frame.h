#pragma once

#include "visual/flash.h"
#include "visual/scene_item.h"

namespace kelo {

/// The frame over the whole window that flashes on beats and on right and wrong answers.
class FlashFrame : public kelo::SceneItem {
    Q_OBJECT
    QML_ELEMENT

protected:
    void linkSet(Link *link) override;
    bool advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override { return isActive() && flashing_ ? 30 : 0; }
    [[nodiscard]] const SpriteList &sprites() const override { return sprites_; }

private:
    FlashLimit limit_;
    double flashAt_ = 0; // of the flash that is shown
    bool mayFill_ = true;
    bool flashing_ = false;
    SpriteList sprites_;
};

} // namespace kelo
