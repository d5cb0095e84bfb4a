#pragma once

#include <filesystem>

namespace kelo::engine {

/// How much sound this machine needs on its way to the loudspeakers, from one run to the next, so
/// that a slow one does not stutter anew each day. A run that needs no more leaves a tenth less to
/// the one after it: a busy evening is not for ever, and a key is heard the sooner.
class SoundQueue {
public:
    explicit SoundQueue(std::filesystem::path file);

    /// Seconds to begin with; 0 where nothing is known.
    [[nodiscard]] double first() const { return longest_; }

    /// So many seconds are on their way; kept where that is more than before.
    void needed(double seconds);

private:
    void keep(double seconds) const;

    std::filesystem::path file_;
    double longest_ = 0;
};

} // namespace kelo::engine
