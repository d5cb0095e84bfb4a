#include "visual/notes/live_bars.h"

#include "visual/sprites/palette.h"

namespace kelo {

namespace {

constexpr std::size_t mostBars = 400; // only a flood of notes reaches it
constexpr double shortestBar = 6; // points

constexpr double fireRate = 34; // sparks a second

} // namespace

void LiveBars::press(
    int pitch, double strength, bool mine, double now, quint32 seed, const RainLayout &layout)
{
    if (bars_.size() >= mostBars)
        bars_.erase(bars_.begin());
    bars_.push_back({.pitch = pitch,
        .mine = mine,
        .strength = strength,
        .born = now,
        .length = shortestBar,
        .fire = {.x = layout.centre(pitch),
            .y = layout.floor(),
            .rate = fireRate,
            .speed = strength * 110 + 90,
            .born = now,
            .seed = seed}});
}

void LiveBars::release(int pitch, bool mine, double now)
{
    for (Bar &bar : bars_) {
        if (bar.held && bar.pitch == pitch && bar.mine == mine) {
            bar.held = false;
            bar.fire.out = now;
        }
    }
}

void LiveBars::advance(double now, double step, const RainLayout &layout)
{
    for (Bar &bar : bars_) {
        if (bar.held) {
            bar.length = std::min(
                std::max((now - bar.born) * RainLayout::speed, shortestBar), layout.height);
        } else {
            bar.risen += step;
        }
    }
    std::erase_if(
        bars_, [&](const Bar &bar) { return layout.floor() + bar.risen > layout.height; });
}

void LiveBars::drawGlows(SpriteList &list, const RainLayout &layout) const
{
    for (const Bar &bar : bars_) {
        const Colour light =
            bar.mine ? colours::green.faded(bar.strength * 0.35 + 0.3) : colours::teal.faded(0.2);
        list.push_back(
            glow(layout.centre(bar.pitch), layout.floor() + bar.risen - RainLayout::glowMargin,
                layout.noteWidth(bar.pitch) * 3.2, bar.length + 2 * RainLayout::glowMargin, light));
    }
}

void LiveBars::drawBars(SpriteList &list, const RainLayout &layout) const
{
    for (const Bar &bar : bars_) {
        const Colour colour = bar.mine ? mixed(colours::green, white, bar.strength * 0.35 + 0.1)
                                             .faded(bar.strength * 0.25 + 0.75)
                                       : colours::teal.faded(0.55);
        list.push_back(kelo::bar(layout.centre(bar.pitch), layout.floor() + bar.risen,
            layout.noteWidth(bar.pitch), bar.length, colour));
    }
}

void LiveBars::drawSparks(SpriteList &list, double now) const
{
    for (const Bar &bar : bars_) {
        if (bar.mine)
            bar.fire.draw(list, now);
    }
}

} // namespace kelo
