#pragma once

#include "link/records.h"
#include "visual/ring/ring_formula.h"
#include "visual/sprites/layer_node.h"

#include <QRectF>

namespace kelo {

class Link;

/// The ring scene: the numbers that move the ring with the assistant's voice and the keys, the
/// circles and arcs around it and the words in its middle. The ring itself and the oscilloscope
/// line under it are pictures of their own (see ring_formula.h), placed and driven from here.
class CoreScene {
public:
    /// Sets the size in points. The motion goes on across a change.
    void resize(double width, double height);

    /// The motion that is there for its own sake.
    struct Motion {
        double time; ///< seconds
        double pace = 1; ///< of the arcs: 1 is as fast as the clock
    };

    /// Brings the scene to `now`, in seconds of uptime, and tells the link the voice's level.
    void update(Link &link, double now) { update(link, now, {now}); }
    /// The same where motion without a reason may rest.
    void update(Link &link, double now, const Motion &motion);

    /// Circle and ticks; they change with the size alone.
    [[nodiscard]] const SpriteList &dial() const { return dial_; }
    /// Two layers: what turns on the dial; and over the ring the words in its middle.
    [[nodiscard]] const Picture &picture() const { return picture_; }

    /// How the pictures look. Bands are 0 to 1.4, the level 0 to 1; the line never lies perfectly
    /// flat; the time starts over where all of their motions do.
    [[nodiscard]] RingLook look() const
    {
        return {values_, level_, level_ + 0.04, flowTime_, offline_ ? 0.35 : 1};
    }

    /// Where the pictures belong, in points, y down. Empty while the scene is too small.
    [[nodiscard]] QRectF ringPlace() const;
    [[nodiscard]] QRectF scopePlace() const;

private:
    [[nodiscard]] bool isUsable() const { return width_ > 60 && height_ > 60; }
    [[nodiscard]] double radius() const;
    [[nodiscard]] double centreX() const { return width_ / 2; }
    [[nodiscard]] double centreY() const; // y up

    [[nodiscard]] VoiceFrame targets(const Link &link, double now, double motionTime) const;
    void spring(const VoiceFrame &targets, double step);
    void drawDial();
    void drawArcs(SpriteList &list) const;
    void write(Layer &layer, const Link &link) const;

    static constexpr std::size_t arcCount = 5;

    double width_ = 0;
    double height_ = 0;
    VoiceFrame values_{};
    VoiceFrame speeds_{}; // a second
    VoiceFrame aims_{};
    double level_ = 0;
    double last_ = 0; // uptime of the previous frame
    double flowTime_ = 0;
    bool offline_ = false;
    std::array<double, arcCount> turned_{}; // radians beyond where each arc began
    SpriteList dial_;
    Picture picture_{2};
};

} // namespace kelo
