#pragma once

#include <QtGlobal>

#include <deque>
#include <limits>
#include <optional>
#include <vector>

namespace kelo {

/// 16 kHz mono.
using Samples = std::vector<qint16>;

inline constexpr double sampleRate = 16000;

[[nodiscard]] inline double secondsOf(const Samples &samples)
{
    return static_cast<double>(samples.size()) / sampleRate;
}

/// The effective value of `samples` without their mean, 0 of none.
[[nodiscard]] double levelOf(const Samples &samples);

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

/// Keeps silence from the recogniser, which would search it for words: a quiet room, and the
/// steady noise of one that is not. Sound passes from a little before it grows loud, so that no
/// first consonant is lost, until it has been quiet for longer than an utterance takes to end.
class LevelGate {
public:
    /// What is to be recognised now that `samples` came: with what preceded them, or nothing.
    Samples pass(Samples samples);

private:
    bool staysQuiet(const Samples &samples);

    std::deque<Samples> runIn_;
    std::size_t runInSize_ = 0; // samples
    std::size_t quietFor_ = std::numeric_limits<std::size_t>::max() / 2; // samples
    double floor_ = 0; // the room's own level; grows slowly and falls at once
};

} // namespace kelo
