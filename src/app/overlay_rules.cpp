#include "app/overlay_rules.h"

#include <algorithm>

namespace kelo {

namespace {

bool wanted(const PanelFacts &facts)
{
    return facts.enabled && facts.window == WindowSight::Unseen;
}

} // namespace

bool OverlayRules::show(double seconds, const PanelFacts &facts)
{
    if (!wanted(facts))
        return false;
    hideAt_ = facts.now + seconds;
    visible_ = true;
    return true;
}

bool OverlayRules::check(bool speaking, const PanelFacts &facts)
{
    if (!visible_)
        return false;
    if (speaking)
        hideAt_ = std::max(hideAt_, facts.now + afterSpeaking);
    visible_ = wanted(facts) && facts.now <= hideAt_;
    return !visible_;
}

} // namespace kelo
