#pragma once

#include "visual/sprites/layer_node.h"

namespace kelo {

class Link;

/// The keyboard strip of the console: 88 keys with what is held, what the engine sounds, the
/// command keys, and a ripple rising above each key pressed.
class KeysStrip {
public:
    /// Draws the strip as it is at `now`, `width` × `height` points large.
    void update(const Link &link, double width, double height, double now);

    [[nodiscard]] const Picture &picture() const { return picture_; }
    /// A ripple is on its way: it will look different in a moment.
    [[nodiscard]] bool moves() const { return moves_; }

private:
    bool moves_ = false;
    Picture picture_{1};
};

} // namespace kelo
