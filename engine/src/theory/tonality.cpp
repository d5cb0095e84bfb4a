#include "theory/tonality.h"

#include "theory/pitch_names.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kelo::engine {

namespace {

constexpr int middleC = 60;
constexpr std::array<int, 7> majorScale{0, 2, 4, 5, 7, 9, 11};
constexpr std::array<int, 7> minorScale{0, 2, 3, 5, 7, 8, 10};

/// How much a listener expects each degree, from the tonic up in semitones.
constexpr PitchClassWeights majorProfile{10, 1, 5, 1, 7, 6, 1, 8, 1, 5, 1, 5};
constexpr PitchClassWeights minorProfile{10, 1, 5, 7, 1, 6, 1, 8, 5, 1, 4, 4};

double agreement(const PitchClassWeights &weights, const Tonality &key)
{
    const auto &profile = key.minor ? minorProfile : majorProfile;
    const double mean = std::accumulate(profile.begin(), profile.end(), 0.0) / 12;
    double sum = 0;
    double size = 0;
    for (std::size_t i = 0; i < 12; ++i) {
        const double expected = profile[i] - mean;
        sum += weights[(i + static_cast<std::size_t>(key.tonic)) % 12] * expected;
        size += expected * expected;
    }
    return sum / std::sqrt(size);
}

const std::array<int, 7> &scaleOf(const Tonality &key)
{
    return key.minor ? minorScale : majorScale;
}

int floorDivide(int value, int by)
{
    return (value - (value % by + by) % by) / by;
}

} // namespace

Tonality tonalityOf(const PitchClassWeights &weights)
{
    Tonality best;
    for (int tonic = 0; tonic < 12; ++tonic) {
        for (const bool minor : {false, true}) {
            if (agreement(weights, {tonic, minor}) > agreement(weights, best) + 1e-9)
                best = {tonic, minor};
        }
    }
    return best;
}

Tonality tonalityOf(std::span<const Note> notes)
{
    constexpr double closing = 0.5; // what a tune ends on is mostly its tonic
    PitchClassWeights weights{};
    for (const Note &note : notes)
        weights[static_cast<std::size_t>(note.pitch % 12)] += std::min(note.duration, 2.0F);
    if (!notes.empty()) {
        const auto last = static_cast<std::size_t>(notes.back().pitch % 12);
        const double all = std::accumulate(weights.begin(), weights.end(), 0.0);
        weights[last] += closing * all / static_cast<double>(notes.size());
    }
    return tonalityOf(weights);
}

int sharpsOf(const Tonality &key)
{
    const int major = key.minor ? key.tonic + 3 : key.tonic;
    const int fifths = major * 7 % 12;
    return fifths > 6 ? fifths - 12 : fifths;
}

Spelling spellingOf(const Tonality &key)
{
    const int sharps = sharpsOf(key);
    return sharps > 0 ? Spelling::Sharps : sharps < 0 ? Spelling::Flats : Spelling::Mixed;
}

std::string nameOf(const Tonality &key)
{
    return pitchName(key.tonic, spellingOf(key)) + (key.minor ? " minor" : " major");
}

int semitonesOf(const Tonality &key, int degree)
{
    const int octave = floorDivide(degree, 7);
    return 12 * octave + scaleOf(key)[static_cast<std::size_t>(degree - 7 * octave)];
}

int pitchOf(const Tonality &key, int degree)
{
    return middleC + key.tonic + semitonesOf(key, degree);
}

int degreeOf(const Tonality &key, int pitch)
{
    const int above = pitch - middleC - key.tonic;
    const int octave = floorDivide(above, 12);
    const auto &scale = scaleOf(key);
    const auto next = std::ranges::upper_bound(scale, above - 12 * octave);
    return 7 * octave + static_cast<int>(next - scale.begin()) - 1;
}

} // namespace kelo::engine
