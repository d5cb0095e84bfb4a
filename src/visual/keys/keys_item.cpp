#include "visual/keys/keys_item.h"

namespace kelo {

void KeysItem::linkSet(Link *link)
{
    if (!link)
        return;
    for (const auto changed :
        {&Link::keysChanged, &Link::buttonsChanged, &Link::stateChanged, &Link::contrastChanged})
        connect(link, changed, this, &KeysItem::answer);
}

void KeysItem::answer()
{
    if (isActive())
        wake();
}

bool KeysItem::advance(Link &link, double now)
{
    shown_ = strip_.sprites();
    strip_.update(link, width(), height(), now);
    return strip_.sprites() != shown_;
}

} // namespace kelo
