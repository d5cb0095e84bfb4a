#include "visual/notes/rain_keyboard.h"

#include "visual/sprites/palette.h"

namespace kelo {

namespace {

constexpr double keyFade = 0.12; // seconds that a key takes to go out
constexpr double lampSwell = 0.03; // seconds
constexpr double lampFade = 0.18;
constexpr double blackLine = 0.45; // opacity of the line around black keys

std::size_t place(int pitch)
{
    return static_cast<std::size_t>(pitch - keyboard::lowest);
}

Colour restingColour(int pitch)
{
    return keyboard::isBlack(pitch) ? colours::bg : colours::green.faded(0.07);
}

} // namespace

void RainKeyboard::press(int pitch, bool mine, double lamp, double now)
{
    keys_[place(pitch)] = {mine ? colours::soft : colours::teal, std::nullopt};
    if (lamp <= 0)
        return;
    std::erase_if(lamps_,
        [&](const Lamp &old) { return old.pitch == pitch && old.mine == mine && !old.released; });
    lamps_.push_back({pitch, mine, lamp, now, std::nullopt});
}

void RainKeyboard::release(int pitch, bool mine, double now)
{
    if (auto &key = keys_[place(pitch)])
        key->released = now;
    std::erase_if(lamps_,
        [now](const Lamp &lamp) { return lamp.released && now - *lamp.released > lampFade; });
    for (Lamp &lamp : lamps_) {
        if (lamp.pitch == pitch && lamp.mine == mine && !lamp.released)
            lamp.released = now;
    }
}

void RainKeyboard::clear()
{
    keys_ = {};
    lamps_.clear();
}

Colour RainKeyboard::keyColour(int pitch, double now) const
{
    const auto &key = keys_[place(pitch)];
    if (!key)
        return restingColour(pitch);
    if (!key->released)
        return key->colour;
    const double gone = std::clamp((now - *key->released) / keyFade, 0.0, 1.0);
    return mixed(key->colour, restingColour(pitch), gone);
}

void RainKeyboard::drawKeys(SpriteList &list, const RainLayout &layout, double now) const
{
    const double key = layout.keyWidth();
    const double floor = layout.floor();
    list.push_back(box(0, 0, layout.width, floor, colours::bg));
    for (int i = 0; i < keyboard::whiteCount; ++i) {
        const int pitch = keyboard::whites[static_cast<std::size_t>(i)];
        list.push_back(box(key * i + 0.75, 0, key - 1.5, floor - 3, keyColour(pitch, now)));
    }
    for (int i = 0; i <= keyboard::whiteCount; ++i)
        list.push_back(box(key * i - 0.5, 0, 1, floor, colours::green.faded(0.35)));
    for (int i = 0; i < keyboard::whiteCount; ++i) {
        const int pitch = keyboard::whites[static_cast<std::size_t>(i)];
        if (!keyboard::hasBlackToRight(pitch))
            continue;
        const double wide = key * keyboard::blackWidth;
        const double tall = floor * keyboard::blackLength;
        const double left = key * (i + 1) - wide / 2;
        // A key with a see-through line around it, half of which lies on the key.
        const double bottom = floor - 3 - tall;
        const Colour colour = keyColour(pitch + 1, now);
        list.push_back(
            box(left - 0.5, bottom - 0.5, wide + 1, tall + 1, colours::green.faded(blackLine)));
        list.push_back(box(left, bottom, wide, tall, mixed(colour, colours::green, blackLine)));
        list.push_back(box(left + 0.5, bottom + 0.5, wide - 1, tall - 1, colour));
    }
    list.push_back(box(0, floor - 1, layout.width, 2, colours::green));
}

void RainKeyboard::drawLamps(SpriteList &list, const RainLayout &layout, double now) const
{
    for (const Lamp &lamp : lamps_) {
        double opacity = lamp.opacity;
        if (lamp.mine)
            opacity *= std::clamp((now - lamp.born) / lampSwell, 0.0, 1.0);
        if (lamp.released)
            opacity *= std::clamp(1 - (now - *lamp.released) / lampFade, 0.0, 1.0);
        if (opacity <= 0)
            continue;
        const double size = layout.keyWidth() * (lamp.mine ? 5 : 4.5);
        list.push_back(
            glow(layout.centre(lamp.pitch), layout.floor(), size, colours::soft.faded(opacity)));
    }
}

} // namespace kelo
