#include "visual/flash/flash_frame.h"

namespace kelo {

void FlashFrame::linkSet(Link *link)
{
    if (link)
        connect(link, &Link::flashAtChanged, this, &FlashFrame::wake);
}

bool FlashFrame::advance(Link &link, double now)
{
    if (link.flashAt.get() != asked_) {
        asked_ = link.flashAt;
        if (const auto begin = limit_.begin(link.flash, asked_))
            flash_ = {link.flash, link.beat.get() == 0, *begin, *begin > asked_};
    }
    const double age = now - flash_.begin;
    flashing_ = age < flashDuration(flash_.kind);
    const bool wasLit = !sprites_.empty();
    sprites_.clear();
    if (!flashing_ || (flash_.waits && age < 0))
        return wasLit;
    const FlashLook look = flashLook(flash_.kind, flash_.firstBeat, age);
    if (look.fill.alpha > 0)
        sprites_.push_back(box(0, 0, width(), height(), look.fill));
    outline(sprites_, 0, 0, width(), height(), look.width, look.outline);
    return true;
}

} // namespace kelo
