#include "voice/capture/audio.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kelo {

namespace {

constexpr double reportEvery = 0.08; // seconds
constexpr double displayGain = 6; // ordinary speech peaks at about a sixth of full scale

constexpr double int16Scale = 1.0 / 32768;
constexpr double int32Scale = 4.656612873077393e-10; // 1 / 2^31

double valueOf(float sample)
{
    return std::isfinite(sample) ? static_cast<double>(sample) : 0;
}
double valueOf(qint16 sample)
{
    return sample * int16Scale;
}
double valueOf(qint32 sample)
{
    return sample * int32Scale;
}

/// Samples of one type in bytes that need not be aligned.
template <typename T> class StoredSamples {
public:
    explicit StoredSamples(const QByteArray &bytes)
        : bytes_(bytes)
    {
    }
    [[nodiscard]] qsizetype size() const { return bytes_.size() / qsizetype{sizeof(T)}; }
    [[nodiscard]] double operator[](qsizetype index) const
    {
        T sample;
        std::memcpy(&sample, bytes_.constData() + index * qsizetype{sizeof(T)}, sizeof(T));
        return valueOf(sample);
    }

private:
    const QByteArray &bytes_;
};

template <typename Read> auto reading(const AudioBuffer &buffer, Read read)
{
    switch (buffer.format.sample) {
    case AudioFormat::Sample::Float32:
        return read(StoredSamples<float>(buffer.bytes));
    case AudioFormat::Sample::Int16:
        return read(StoredSamples<qint16>(buffer.bytes));
    case AudioFormat::Sample::Int32:
        return read(StoredSamples<qint32>(buffer.bytes));
    case AudioFormat::Sample::Other:
        break;
    }
    return decltype(read(StoredSamples<qint16>(buffer.bytes))){};
}

} // namespace

double peakOf(const AudioBuffer &buffer)
{
    return reading(buffer, [](const auto &samples) {
        double peak = 0;
        for (qsizetype i = 0; i < samples.size(); i += 8)
            peak = std::max(peak, std::abs(samples[i]));
        return peak;
    });
}

Samples monoOf(const AudioBuffer &buffer)
{
    const int channels = std::max(buffer.format.channels, 1);
    return reading(buffer, [channels](const auto &samples) {
        Samples mono(static_cast<std::size_t>(samples.size() / channels));
        for (std::size_t frame = 0; frame < mono.size(); ++frame) {
            double sum = 0;
            for (int channel = 0; channel < channels; ++channel)
                sum += samples[static_cast<qsizetype>(frame) * channels + channel];
            const double scaled = std::clamp(sum / channels * 32768, -32768.0, 32767.0);
            mono[frame] = static_cast<qint16>(std::lround(scaled));
        }
        return mono;
    });
}

double levelOf(const Samples &samples)
{
    double sum = 0;
    double squares = 0;
    for (const qint16 sample : samples) {
        sum += sample;
        squares += static_cast<double>(sample) * sample;
    }
    const auto count = static_cast<double>(std::max<std::size_t>(samples.size(), 1));
    const double mean = sum / count;
    return std::sqrt(std::max(0.0, squares / count - mean * mean));
}

double LevelReport::shown() const
{
    return std::min(peak * displayGain, 1.0);
}

std::optional<LevelReport> PeakMeter::add(double peak, double now)
{
    ++buffers_;
    loudest_ = std::max(loudest_, peak);
    if (!(now - lastReport_ > reportEvery))
        return std::nullopt;
    const LevelReport report{loudest_, buffers_};
    loudest_ = 0;
    lastReport_ = now;
    return report;
}

} // namespace kelo
