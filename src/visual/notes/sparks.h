#pragma once

#include "visual/sprites/sprite.h"

#include <optional>

namespace kelo {

/// A fountain of sparks. Where each spark is follows from the fountain's seed and the time alone,
/// so that the same moment always looks the same.
struct Sparks {
    double x = 0; ///< where they spring from, points
    double y = 0;
    double rate = 0; ///< sparks a second
    int count = 0; ///< all there will be; 0 for as many as come until it is put out
    double speed = 0; ///< mean, points a second
    double born = 0; ///< uptime of the first spark
    std::optional<double> out{}; ///< uptime at which it was put out
    quint32 seed = 0;

    /// Appends the sparks that fly at `now`.
    void draw(SpriteList &list, double now) const;
};

} // namespace kelo
