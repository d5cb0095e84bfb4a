#pragma once

#include <cstddef>

namespace kelo::engine {

/// Turns music down while somebody speaks: quickly when speech begins, and back slowly once it has
/// been over for a moment, so that pauses between sentences do not pump.
class Ducker {
public:
    static constexpr float depth = 0.4F; ///< gain under speech, -8 dB

    /// The gain of the next `count` samples; `speech`: some of them are spoken.
    [[nodiscard]] float next(std::size_t count, bool speech);

private:
    double sinceSpeech_ = 1e9; ///< seconds
    float gain_ = 1;
};

} // namespace kelo::engine
