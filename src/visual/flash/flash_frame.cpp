#include "visual/flash/flash_frame.h"

namespace kelo {

void FlashFrame::linkSet(Link &link)
{
    connect(&link, &Link::flashAtChanged, this, &FlashFrame::wake);
}

void FlashFrame::advance(Link &link, double now)
{
    if (link.flashAt.get() != asked_) {
        asked_ = link.flashAt;
        if (const auto begin = limit_.begin(link.flash, link.beat, asked_))
            flash_ = {link.flash, link.beat.get() == 0, *begin};
    }
    const double age = now - flash_.begin;
    flashing_ = age < flashDuration(flash_.kind);
    SpriteList &sprites = picture_.front().sprites;
    sprites.clear();
    if (!flashing_)
        return;
    const FlashLook look = flashLook(flash_.kind, flash_.firstBeat, age);
    if (look.fill.alpha > 0)
        sprites.push_back(box(0, 0, width(), height(), look.fill));
    outline(sprites, 0, 0, width(), height(), look.width, look.outline);
}

} // namespace kelo
