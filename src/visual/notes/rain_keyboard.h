#pragma once

#include "visual/notes/rain_layout.h"
#include "visual/sprites/sprite.h"

#include <array>
#include <optional>
#include <vector>

namespace kelo {

/// The keyboard of the falling-notes scene: its keys, lit while they sound, and the lamps that
/// shine where a note meets it.
class RainKeyboard {
public:
    /// Lights a key. `lamp` is the lamp's opacity, 0 for none; the user's swells, the engine's is
    /// there at once.
    void press(int pitch, bool mine, double lamp, double now);
    /// Lets the key, and the lamp of this player, go out.
    void release(int pitch, bool mine, double now);
    void clear();

    void drawKeys(SpriteList &list, const RainLayout &layout, double now) const;
    void drawLamps(SpriteList &list, const RainLayout &layout, double now) const;

private:
    struct Key {
        Colour colour; // while it is down
        std::optional<double> released; // uptime
    };
    struct Lamp {
        int pitch;
        bool mine;
        double opacity;
        double born; // uptime, seconds
        std::optional<double> released;
    };

    [[nodiscard]] Colour keyColour(int pitch, double now) const;

    std::array<std::optional<Key>, keyboard::highest - keyboard::lowest + 1> keys_;
    std::vector<Lamp> lamps_;
};

} // namespace kelo
