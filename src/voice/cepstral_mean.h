#pragma once

#include <array>
#include <span>

namespace kelo {

/// What all speech has in common here, in a recogniser's features: a microphone, a room, how loud
/// people are. Without it, what they say remains. One for all utterances; it is found within a few
/// seconds of speech and then follows slowly, since a single call is too short to tell how it
/// sounds from what it says.
class CepstralMean {
public:
    /// Takes the mean, to which `frame` now belongs, from `frame`: its cepstrum from the 0th
    /// coefficient on.
    void takeFrom(std::span<float> frame);

private:
    /// Of the lab's voices, from a synthesiser at its usual loudness, in quiet and noise.
    std::array<double, 13> mean_{
        63.9, -9.3, -0.9, 4.9, -11.0, -3.5, -7.8, -7.1, -5.0, -2.1, 2.2, -3.0, -0.2};
    double frames_ = 100; ///< that it stands for, of 10 ms
};

} // namespace kelo
