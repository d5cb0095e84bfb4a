#include "visual/flash_frame.h"

namespace kelo {

void FlashFrame::linkSet(Link *link)
{
    if (link)
        connect(link, &Link::flashAtChanged, this, &FlashFrame::wake);
}

bool FlashFrame::advance(Link &link, double now)
{
    const double age = now - link.flashAt;
    flashing_ = age < flashDuration(link.flash);
    if (!flashing_ && sprites_.empty())
        return false;
    sprites_.clear();
    if (!flashing_)
        return true;
    FlashLook look = flashLook(link.flash, link.beat.get() == 0, age);
    if (link.flashAt.get() != flashAt_) {
        flashAt_ = link.flashAt;
        mayFill_ = look.fill.alpha > 0 && limit_.mayFill(flashAt_);
    }
    if (mayFill_)
        sprites_.push_back(box(0, 0, width(), height(), look.fill));
    outline(sprites_, 0, 0, width(), height(), look.width, look.outline);
    return true;
}

} // namespace kelo
