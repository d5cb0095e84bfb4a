#pragma once

#include "visual/sprites/sprite_item.h"

namespace kelo {

/// The faint squared backdrop behind the screens.
class GridBackdrop : public kelo::SpriteItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Grid)

public:
    [[nodiscard]] const Picture &picture() const override { return picture_; }

protected:
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    Picture picture_{1};
};

} // namespace kelo
