#pragma once

#include "voice/capture/audio.h"

struct SpeexEchoState_;

namespace kelo {

/// Takes from what a microphone hears what the loudspeakers play: the assistant's own voice, the
/// piano, a screen reader. Both come piece by piece, by the same clock or nearly, and what is
/// played comes no later than its echo. How the room changes it is learnt from the first seconds of
/// sound and followed from then on. Where nothing is played, what is heard stays as it is.
class EchoCanceller {
public:
    EchoCanceller();
    ~EchoCanceller();
    Q_DISABLE_COPY_MOVE(EchoCanceller)

    /// The loudspeakers play this.
    void play(const Samples &samples);
    /// `samples`, without the echo. Up to 16 ms of them come with the next ones, and what is played
    /// is waited for, but not for longer than 0.1 s.
    [[nodiscard]] Samples hear(const Samples &samples);

private:
    void takeFrame(Samples &cleaned);
    void forgetBacklog();

    SpeexEchoState_ *echo_ = nullptr;
    Samples heard_; // not paired yet with what is played
    Samples played_;
    std::size_t quiet_; // samples since something was played
    std::size_t backlog_; // what has waited of it all through the last seconds
    std::size_t watched_ = 0; // samples
    bool playing_ = false; // since then
    bool awaited_ = false; // something was played in the seconds before
};

} // namespace kelo
