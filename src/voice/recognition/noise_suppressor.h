#pragma once

#include "voice/capture/audio.h"

struct SpeexPreprocessState_;

namespace kelo {

/// Takes the steady noise of a room from speech. Knows the noise after a second of it, and that it
/// is gone after a tenth.
class NoiseSuppressor {
public:
    NoiseSuppressor();
    ~NoiseSuppressor();
    Q_DISABLE_COPY_MOVE(NoiseSuppressor)

    /// `samples` without noise; up to 10 ms of them come with the next ones.
    [[nodiscard]] Samples clean(const Samples &samples);

private:
    void begin();
    void cleanFrame(qint16 *samples);
    [[nodiscard]] bool believesTooMuch() const;

    SpeexPreprocessState_ *state_ = nullptr;
    Samples waiting_; // less than a frame
    Samples late_; // as it came, since when there has been less than the noise
};

} // namespace kelo
