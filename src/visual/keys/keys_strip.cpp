#include "visual/keys/keys_strip.h"

#include "link/link.h"
#include "visual/keys/keyboard.h"
#include "visual/sprites/palette.h"

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

// Points from the strip's top edge.
constexpr double rippleTop = 10;
constexpr double rippleFloor = 74;
constexpr double keysTop = 80;
constexpr double labelMiddle = 72;

constexpr double rippleSpeed = 46; // points a second, both growing and leaving
constexpr double rippleOver = 0.3; // seconds after which a released one has left the labels
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

    [[nodiscard]] bool isHeld(int whiteIndex) const
    {
        return link_.down.contains(pitchOf(whiteIndex));
    }

    /// The white keys from `first` to before `last`, none of them held. Lines that touch are one.
    void restingKeys(int first, int last)
    {
        if (first == last)
            return;
        for (int i = first; i < last; ++i) {
            if (link_.played.contains(pitchOf(i)))
                sprites_.push_back(fillOfWhite(i, text_.soft.faded(0.35)));
        }
        const Colour line = colours::shade.faded(0.75);
        const double left = key_ * first;
        const double wide = key_ * (last - first);
        const double tall = height_ - keysTop;
        sprites_.push_back(fill(left, keysTop - 0.5, wide, 1, line));
        sprites_.push_back(fill(left, height_ - 0.5, wide, 1, line));
        const auto upright = [&](double from, double width) {
            sprites_.push_back(fill(from, keysTop + 0.5, width, tall - 1, line));
        };
        upright(left, 1);
        for (int i = first + 1; i < last; ++i)
            upright(key_ * i - 1, 2);
        upright(left + wide - 1, 1);
        for (int i = first; i < last; ++i)
            commandMark(i);
    }

    void heldKey(int index)
    {
        const double left = key_ * index + 0.5;
        const double wide = key_ - 1;
        const double tall = height_ - keysTop;
        const double velocity = static_cast<double>(link_.down.value(pitchOf(index)));
        const double reach = 2 * haloRadius;
        Sprite halo =
            fill(left - reach / 2, keysTop - reach / 2, wide + reach, tall + reach, colours::green);
        halo.radius = halo.feather = static_cast<float>(reach);
        sprites_.push_back(halo);
        sprites_.push_back(fillOfWhite(index, colours::green.faded(velocity * 0.45 / 127 + 0.55)));
        outline(sprites_, left, 0, wide, tall, 1, colours::shade.faded(0.75));
        commandMark(index);
    }

    void blackKey(int whiteToLeft)
    {
        const int pitch = pitchOf(whiteToLeft) + 1;
        const double wide = key_ * keyboard::blackWidth;
        const double left = key_ * (whiteToLeft + 1) - wide / 2;
        const double tall = (height_ - keysTop) * keyboard::blackLength;
        const Colour colour = link_.down.contains(pitch) ? text_.soft
            : link_.played.contains(pitch)               ? text_.dim
                                                         : colours::bg;
        sprites_.push_back(fill(left - 0.5, keysTop - 0.5, wide + 1, tall + 1, colours::shade));
        sprites_.push_back(fill(left + 0.5, keysTop + 0.5, wide - 1, tall - 1, colour));
    }

    [[nodiscard]] Label commandLabel(qsizetype place, double now) const
    {
        const double x = keyboard::centre(link_.buttons[place], key_);
        const bool rippled = std::ranges::any_of(link_.ripples, [&](const Ripple &ripple) {
            const double away = keyboard::centre(ripple.pitch, key_) - x;
            return std::abs(away) < key_ && (!ripple.off || now - *ripple.off < rippleOver);
        });
        return {.text = keyboard::commandKeyLabel(place),
            .x = x,
            .y = height_ - labelMiddle - labelSize * capHeight / 2,
            .size = labelSize,
            .centred = true,
            .ground = rippled ? Label::Ground::Plate : Label::Ground::None,
            .colour = colours::green};
    }

private:
    static int pitchOf(int whiteIndex)
    {
        return keyboard::whites[static_cast<std::size_t>(whiteIndex)];
    }

    void commandMark(int index)
    {
        const int pitch = pitchOf(index);
        if (!link_.buttons.contains(pitch))
            return;
        if (!link_.down.contains(pitch))
            sprites_.push_back(fillOfWhite(index, colours::green.faded(0.16)));
        outline(sprites_, key_ * index + 1.5, 1, key_ - 3, height_ - keysTop - 2, 1,
            colours::green.faded(0.8));
    }

    [[nodiscard]] Sprite fillOfWhite(int index, Colour colour) const
    {
        return fill(key_ * index + 0.5, keysTop, key_ - 1, height_ - keysTop, colour);
    }

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
    auto &[sprites, labels] = picture_.front();
    sprites.clear();
    labels.clear();
    moves_ = false;
    if (width <= 0 || height <= keysTop)
        return;
    Painter painter(sprites, link, width, height);
    for (const Ripple &ripple : link.ripples)
        moves_ = painter.ripple(ripple, now) || moves_;
    int firstResting = 0;
    for (int i = 0; i < keyboard::whiteCount; ++i) {
        if (!painter.isHeld(i))
            continue;
        painter.restingKeys(firstResting, i);
        painter.heldKey(i);
        firstResting = i + 1;
    }
    painter.restingKeys(firstResting, keyboard::whiteCount);
    for (int i = 0; i < keyboard::whiteCount; ++i) {
        if (keyboard::hasBlackToRight(keyboard::whites[static_cast<std::size_t>(i)]))
            painter.blackKey(i);
    }
    for (qsizetype place = 0; place < link.buttons.size(); ++place) {
        const qint64 pitch = link.buttons[place];
        if (keyboard::contains(pitch) && !keyboard::isBlack(pitch)
            && link.buttons.indexOf(pitch) == place)
            labels.append(painter.commandLabel(place, now));
    }
}

} // namespace kelo
