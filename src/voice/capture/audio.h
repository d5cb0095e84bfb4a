#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>
#include <vector>

/// Sound on its way from a microphone to a recogniser.
namespace kelo {

/// 16-bit mono, unless it says otherwise 16,000 a second.
using Samples = std::vector<qint16>;

inline constexpr double sampleRate = 16000;

[[nodiscard]] inline double secondsOf(const Samples &samples)
{
    return static_cast<double>(samples.size()) / sampleRate;
}

/// The effective value of `samples` without their mean, 0 of none.
[[nodiscard]] double levelOf(const Samples &samples);

/// How a buffer's samples are stored; all in the byte order of this machine.
struct AudioFormat {
    enum class Sample {
        Float32, ///< -1 to 1
        Int16,
        Int32,
        Other, ///< understood by nobody here, counts as silence
    };

    Sample sample = Sample::Int16;
    int rate = 16000; ///< frames a second
    int channels = 1; ///< interleaved
};

/// A stretch of sound, usually some 20 ms. The bytes are shared, not copied.
struct AudioBuffer {
    AudioFormat format;
    QByteArray bytes;
};

/// The largest absolute value among every 8th stored sample, full scale being 1. Channels are read
/// as they lie. 0 for a format that is not understood, for no data, and for what is not a number.
[[nodiscard]] double peakOf(const AudioBuffer &buffer);

/// The same sound as 16-bit mono at its own rate: channels averaged, too loud clipped. Empty for a
/// format that is not understood; what is left over at the end of the bytes is ignored.
[[nodiscard]] Samples monoOf(const AudioBuffer &buffer);

/// What the meter has to tell.
struct LevelReport {
    double peak = 0; ///< since the last report, unscaled
    qint64 buffers = 0; ///< buffers since the meter was made
    /// What the display shows, 0 to 1.
    [[nodiscard]] double shown() const;
    /// Now and then a report is worth a line in the voice log.
    [[nodiscard]] bool worthLogging() const { return buffers % 6000 < 8; }
};

/// Counts buffers and gathers their peaks into reports, one at most every 0.08 seconds.
class PeakMeter {
public:
    /// `now` is seconds of uptime.
    std::optional<LevelReport> add(double peak, double now);

private:
    qint64 buffers_ = 0;
    double loudest_ = 0;
    double lastReport_ = 0;
};

} // namespace kelo
