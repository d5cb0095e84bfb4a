#include "visual/rain_drawing.h"

#include "visual/palette.h"

namespace kelo {

QColor RainDrawing::background()
{
    return colours::bg.toQColor();
}

void RainDrawing::linkSet(Link *link)
{
    scene_.reset();
    if (!link)
        return;
    scene_ = std::make_unique<RainScene>(*link);
    scene_->resize(width(), height());
}

void RainDrawing::geometryChange(const QRectF &now, const QRectF &before)
{
    if (scene_)
        scene_->resize(now.width(), now.height());
    SceneItem::geometryChange(now, before);
}

bool RainDrawing::advance(Link & /*link*/, double now)
{
    scene_->setCaptionTop(captionTop_);
    scene_->update(clock_.step(now, pacer().period()));
    return true;
}

const SpriteList &RainDrawing::sprites() const
{
    static const SpriteList none;
    return scene_ ? scene_->sprites() : none;
}

LabelList RainDrawing::texts() const
{
    return scene_ ? scene_->labels() : LabelList();
}

} // namespace kelo
