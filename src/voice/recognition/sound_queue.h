#pragma once

#include "voice/capture/audio.h"

#include <deque>
#include <optional>

namespace kelo {

/// Sound that waits to be recognised. When the recogniser falls behind, what is lost is the oldest
/// silence, and speech only when nothing else is left.
class SoundQueue {
public:
    /// Without `bounded` it takes whatever comes.
    explicit SoundQueue(bool bounded);

    /// Returns how many seconds of sound were dropped for it.
    double push(Samples samples);
    /// The oldest sound, nothing when there is none.
    std::optional<Samples> pop();
    [[nodiscard]] bool empty() const { return chunks_.empty(); }
    [[nodiscard]] double seconds() const { return static_cast<double>(samples_) / sampleRate; }

private:
    struct Chunk {
        Samples samples;
        bool quiet = false;
    };

    std::size_t drop(const std::deque<Chunk>::iterator &chunk);

    bool bounded_;
    std::deque<Chunk> chunks_;
    std::size_t samples_ = 0; // in all
};

} // namespace kelo
