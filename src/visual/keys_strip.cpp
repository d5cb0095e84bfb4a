#include "visual/keys_strip.h"

#include "link/link.h"
#include "visual/keyboard.h"
#include "visual/palette.h"

#include <algorithm>

namespace kelo {

namespace {

// Points from the strip's top edge.
constexpr double rippleTop = 10;
constexpr double rippleFloor = 74;
constexpr double keysTop = 80;
constexpr double labelMiddle = 72;

constexpr double rippleSpeed = 46; // points a second, both growing and leaving
constexpr double rippleWidth = 0.56; // of a key, the same for black and white ones
constexpr double rippleCorner = 2;
constexpr double haloRadius = 6; // of the blur around a held key
constexpr double labelSize = 8.5;

/// Draws a strip whose places are counted downwards.
class Painter {
public:
    Painter(SpriteList &sprites, const Link &link, double width, double height)
        : sprites_(sprites)
        , link_(link)
        , text_(TextColours::of(link.contrast))
        , height_(height)
        , key_(width / keyboard::whiteCount)
    {
    }

    /// Whether it is on its way.
    bool ripple(const Ripple &ripple, double now)
    {
        constexpr double reach = rippleFloor - rippleTop;
        const double fade = ripple.off ? (now - *ripple.off) * rippleSpeed : 0;
        const double grow = std::min((now - ripple.at) * rippleSpeed, reach);
        const double tall = grow - fade;
        const bool moves = grow < reach || (ripple.off && fade <= reach);
        if (fade > reach || tall < 1)
            return moves && !ripple.off;
        const Colour tip = colours::green.faded(0);
        const Colour foot = text_.soft.faded(ripple.strength * 0.6 + 0.35);
        Sprite sprite = fill(keyboard::centre(ripple.pitch, key_) - key_ * rippleWidth / 2,
            rippleFloor - grow, key_ * rippleWidth, tall, {});
        sprite.radius = rippleCorner;
        sprite.top = mixed(tip, foot, 1 - grow / reach);
        sprite.bottom = mixed(tip, foot, 1 - fade / reach);
        sprites_.push_back(sprite);
        return moves;
    }

    void whiteKey(int index)
    {
        const int pitch = keyboard::whites[static_cast<std::size_t>(index)];
        const double left = key_ * index + 0.5;
        const double wide = key_ - 1;
        const double tall = height_ - keysTop;
        const auto held = link_.down.constFind(pitch);
        const bool isHeld = held != link_.down.cend();
        if (isHeld) {
            const double reach = 2 * haloRadius;
            Sprite halo = fill(
                left - reach / 2, keysTop - reach / 2, wide + reach, tall + reach, colours::green);
            halo.radius = halo.feather = static_cast<float>(reach);
            sprites_.push_back(halo);
            sprites_.push_back(fill(left, keysTop, wide, tall,
                colours::green.faded(static_cast<double>(*held) * 0.45 / 127 + 0.55)));
        } else if (link_.played.contains(pitch)) {
            sprites_.push_back(fill(left, keysTop, wide, tall, text_.soft.faded(0.35)));
        }
        outline(sprites_, left, 0, wide, tall, 1, colours::shade.faded(0.75));
        if (!link_.buttons.contains(pitch))
            return;
        if (!isHeld)
            sprites_.push_back(fill(left, keysTop, wide, tall, colours::green.faded(0.16)));
        outline(sprites_, left + 1, 1, wide - 2, tall - 2, 1, colours::green.faded(0.8));
    }

    void blackKey(int whiteToLeft)
    {
        const int pitch = keyboard::whites[static_cast<std::size_t>(whiteToLeft)] + 1;
        const double wide = key_ * keyboard::blackWidth;
        const double left = key_ * (whiteToLeft + 1) - wide / 2;
        const double tall = (height_ - keysTop) * keyboard::blackLength;
        const Colour colour = link_.down.contains(pitch) ? text_.soft
            : link_.played.contains(pitch)               ? text_.dim
                                                         : colours::bg;
        sprites_.push_back(fill(left, keysTop, wide, tall, colour));
        outline(sprites_, left, height_ - keysTop - tall, wide, tall, 1, colours::shade);
    }

    [[nodiscard]] Label commandLabel(qsizetype place) const
    {
        return {.text = keyboard::commandKeyLabel(place),
            .x = keyboard::centre(link_.buttons[place], key_),
            .y = height_ - labelMiddle - labelSize * capHeight / 2,
            .size = labelSize,
            .centred = true,
            .colour = colours::green};
    }

private:
    [[nodiscard]] Sprite fill(
        double left, double top, double wide, double tall, Colour colour) const
    {
        return box(left, height_ - top - tall, wide, tall, colour);
    }

    SpriteList &sprites_;
    const Link &link_;
    TextColours text_;
    double height_;
    double key_;
};

} // namespace

void KeysStrip::update(const Link &link, double width, double height, double now)
{
    sprites_.clear();
    labels_.clear();
    moves_ = false;
    if (width <= 0 || height <= keysTop)
        return;
    Painter painter(sprites_, link, width, height);
    for (const Ripple &ripple : link.ripples)
        moves_ = painter.ripple(ripple, now) || moves_;
    for (int i = 0; i < keyboard::whiteCount; ++i)
        painter.whiteKey(i);
    for (int i = 0; i < keyboard::whiteCount; ++i) {
        if (keyboard::hasBlackToRight(keyboard::whites[static_cast<std::size_t>(i)]))
            painter.blackKey(i);
    }
    for (qsizetype place = 0; place < link.buttons.size(); ++place) {
        const qint64 pitch = link.buttons[place];
        if (keyboard::contains(pitch) && !keyboard::isBlack(pitch)
            && link.buttons.indexOf(pitch) == place)
            labels_.append(painter.commandLabel(place));
    }
}

} // namespace kelo
