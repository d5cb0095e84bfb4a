#include "visual/keys_drawing.h"

namespace kelo {

void KeysDrawing::linkSet(Link *link)
{
    if (!link)
        return;
    for (const auto changed :
        {&Link::keysChanged, &Link::buttonsChanged, &Link::stateChanged, &Link::contrastChanged})
        connect(link, changed, this, &KeysDrawing::answer);
}

void KeysDrawing::answer()
{
    if (isActive())
        wake();
}

bool KeysDrawing::advance(Link &link, double now)
{
    shown_ = strip_.sprites();
    strip_.update(link, width(), height(), now);
    return strip_.sprites() != shown_;
}

} // namespace kelo
