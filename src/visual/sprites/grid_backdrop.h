#pragma once

#include "visual/sprites/sprite_item.h"

namespace kelo {

/// The faint squared backdrop behind the screens.
class GridBackdrop : public kelo::SpriteItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Grid)

protected:
    [[nodiscard]] const SpriteList &sprites() const override { return sprites_; }
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    SpriteList sprites_;
};

} // namespace kelo
