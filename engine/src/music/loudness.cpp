#include "music/loudness.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr double velocityPower = 2.5; ///< of the energy of a note
constexpr double ringing = 0.3; ///< seconds that a string sounds on after its key
constexpr double longestEnergy = 0.6; ///< seconds; by then most of a tone has died away
constexpr double commonLevel = 0.8; ///< dB of a second of full velocity
constexpr double furthest = 9; ///< dB

} // namespace

float levellingGain(const Piece &piece)
{
    double energy = 0;
    for (const Note &note : piece.notes)
        energy += std::pow(note.velocity / 127.0, velocityPower)
            * std::min(note.duration + ringing, longestEnergy);
    if (energy <= 0 || piece.length <= 0)
        return 1;
    const double level = 10 * std::log10(energy / piece.length);
    const double gain = std::clamp(commonLevel - level, -furthest, furthest);
    return static_cast<float>(std::pow(10, gain / 20));
}

} // namespace kelo::engine
