#pragma once

#include "visual/keys/keys_strip.h"
#include "visual/motion/scene_item.h"

namespace kelo {

/// The keyboard strip as an item. While active it shows each key at once and moves smoothly; what
/// stands still is looked at twice a second.
class KeysItem : public kelo::SceneItem {
    Q_OBJECT
    QML_ELEMENT

protected:
    void linkSet(Link *link) override;
    bool advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override { return isActive() && strip_.moves() ? 30 : 2; }
    [[nodiscard]] const SpriteList &sprites() const override { return strip_.sprites(); }
    [[nodiscard]] LabelList texts() const override { return strip_.labels(); }

private:
    void answer();

    KeysStrip strip_;
    SpriteList shown_; // what was drawn last
};

} // namespace kelo
