#pragma once

#include "link/records.h"

#include <QByteArrayView>

#include <optional>
#include <vector>

namespace kelo {

/// What the engine has told of the voice it is producing: a stream of spectrum frames, 60 a
/// second. Times are seconds of uptime.
struct VoiceSpectrum {
    qint64 id = 0; ///< the stream; frames of others are stale
    std::vector<VoiceFrame> frames; ///< of the current utterance
    std::optional<double> anchor; ///< when frame 0 sounds, known from the first word on
    double start = 0; ///< when the engine announced the sound; 0 when it did not

    /// A new stream begins.
    void begin(qint64 stream);
    /// Stores the frames in `letters` from position `index` on, in place of older ones or as the
    /// next; gaps are never filled. False at a position below 0.
    [[nodiscard]] bool store(qint64 index, QByteArrayView letters);
    /// The first word of an utterance tells when its frame 0 sounded.
    void anchorAtWord(double now);

    /// The spectrum at `now`, interpolated between two frames; nothing before the first frame and
    /// after the last.
    [[nodiscard]] std::optional<VoiceFrame> bandsAt(double now) const;
};

} // namespace kelo
