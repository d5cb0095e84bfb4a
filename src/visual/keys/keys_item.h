#pragma once

#include "visual/keys/keys_strip.h"
#include "visual/motion/scene_item.h"

namespace kelo {

/// The keyboard strip as an item. While active it shows each key at once and moves smoothly; what
/// stands still is looked at twice a second. It is decoration: screen readers pass it by.
class KeysItem : public kelo::SceneItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Keys)

public:
    [[nodiscard]] const Picture &picture() const override { return strip_.picture(); }

protected:
    void linkSet(Link &link) override;
    void advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override { return isActive() && strip_.moves() ? 30 : 2; }

private:
    void answer();

    KeysStrip strip_;
};

} // namespace kelo
