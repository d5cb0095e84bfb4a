#pragma once

#include "visual/keys_strip.h"
#include "visual/scene_item.h"

namespace kelo {

/// The keyboard strip as an item. It moves smoothly while active, else twice a second.
class KeysDrawing : public kelo::SceneItem {
    Q_OBJECT
    QML_ELEMENT

protected:
    bool advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override { return isActive() ? 30 : 2; }
    [[nodiscard]] const SpriteList &sprites() const override { return strip_.sprites(); }
    [[nodiscard]] LabelList texts() const override { return strip_.labels(); }

private:
    KeysStrip strip_;
    SpriteList shown_; // what was drawn last
};

} // namespace kelo
