#include "speech/spectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelo::engine {

namespace {

constexpr double lowest = 80.0;
constexpr double highest = 8000.0;

// Where a band of ordinary speech begins to be visible, and where it is at its loudest, in dB
// of full scale.
constexpr double quiet = -58.0;
constexpr double loud = -16.0;

char letter(double meanSquare)
{
    const double decibel = 10 * std::log10(meanSquare);
    const double level = std::clamp((decibel - quiet) / (loud - quiet), 0.0, 1.0);
    return static_cast<char>('a' + std::lround(level * 15));
}

} // namespace

Spectrum::Spectrum(double rate)
    : samplesPerFrame_(rate / framesPerSecond)
    , frameEnd_(samplesPerFrame_)
{
    const double step = std::pow(highest / lowest, 1.0 / bands);
    const double quality = 1 / (std::sqrt(step) - 1 / std::sqrt(step));
    for (std::size_t i = 0; i < bands; ++i) {
        const double centre = lowest * std::pow(step, static_cast<double>(i) + 0.5);
        const double angle = 2 * std::numbers::pi * std::min(centre / rate, 0.45);
        const double alpha = std::sin(angle) / (2 * quality);
        Band &band = filters_[i];
        band.b0 = alpha / (1 + alpha);
        band.a1 = -2 * std::cos(angle) / (1 + alpha);
        band.a2 = (1 - alpha) / (1 + alpha);
    }
}

std::string Spectrum::listen(std::span<const float> samples)
{
    std::string letters;
    for (const float sample : samples) {
        for (Band &band : filters_) {
            const double y = band.b0 * (sample - band.x2) - band.a1 * band.y1 - band.a2 * band.y2;
            band.x2 = band.x1;
            band.x1 = sample;
            band.y2 = band.y1;
            band.y1 = y;
            band.energy += y * y;
        }
        if (++heard_ < frameEnd_)
            continue;
        for (Band &band : filters_) {
            letters += letter(band.energy / (heard_ - frameBegin_));
            band.energy = 0;
        }
        frameBegin_ = heard_;
        frameEnd_ += samplesPerFrame_;
    }
    return letters;
}

} // namespace kelo::engine
