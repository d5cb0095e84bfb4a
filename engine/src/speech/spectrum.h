#pragma once

#include <array>
#include <span>
#include <string>

namespace kelo::engine {

/// Hears speech in sixteen bands from 80 Hz to 8 kHz, evenly spaced in pitch, and writes what it
/// hears down sixty times a second: a letter a band, "a" for silence to "p" for full voice.
class Spectrum {
public:
    static constexpr std::size_t bands = 16;
    static constexpr int framesPerSecond = 60;

    /// `rate`: samples a second of what it is given.
    explicit Spectrum(double rate);

    /// The letters of the frames that end within `samples` (-1 to 1); sixteen a frame.
    [[nodiscard]] std::string listen(std::span<const float> samples);

private:
    /// A second-order band-pass filter with unit gain at its centre.
    struct Band {
        double b0 = 0, a1 = 0, a2 = 0;
        double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
        double energy = 0; ///< sum of squares of the frame so far
    };

    double samplesPerFrame_;
    double frameEnd_;
    double heard_ = 0; ///< samples since the beginning
    double frameBegin_ = 0;
    std::array<Band, bands> filters_;
};

} // namespace kelo::engine
