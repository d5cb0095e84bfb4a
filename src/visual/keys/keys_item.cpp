#include "visual/keys/keys_item.h"

namespace kelo {

void KeysItem::linkSet(Link &link)
{
    for (const auto changed :
        {&Link::keysChanged, &Link::buttonsChanged, &Link::stateChanged, &Link::contrastChanged})
        connect(&link, changed, this, &KeysItem::answer);
}

void KeysItem::answer()
{
    if (isActive())
        wake();
}

void KeysItem::advance(Link &link, double now)
{
    strip_.update(link, width(), height(), now);
}

} // namespace kelo
