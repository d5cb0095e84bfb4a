#include "link/voice_spectrum.h"

#include "link/bounds.h"
#include "link/parse.h"

#include <algorithm>

namespace kelo {

namespace {

constexpr double framesPerSecond = 60.0;
constexpr double startToSound = 0.04; // seconds from the engine's "start" to the first frame
constexpr double anchorLead = 0.03; // seconds by which the first word's report trails the sound

VoiceFrame frameOf(QByteArrayView letters)
{
    VoiceFrame frame{};
    std::ranges::transform(letters, frame.begin(), [](char c) {
        const int value = static_cast<unsigned char>(c) - 'a';
        return value < 0 ? 0.0 : value / 15.0;
    });
    return frame;
}

} // namespace

void VoiceSpectrum::begin(qint64 stream)
{
    id = stream;
    frames.clear();
    anchor.reset();
    start = 0;
}

bool VoiceSpectrum::store(qint64 index, QByteArrayView letters)
{
    for (qsizetype frame = 0; (frame + 1) * voiceBandCount <= letters.size(); ++frame) {
        const qint64 position = parse::saturatedSum(index, frame);
        if (position < 0)
            return false;
        const auto at = static_cast<std::size_t>(position);
        const VoiceFrame bands = frameOf(letters.sliced(frame * voiceBandCount, voiceBandCount));
        if (at < frames.size())
            frames[at] = bands;
        else if (at == frames.size() && at < bounds::voiceFrames)
            frames.push_back(bands);
    }
    return true;
}

void VoiceSpectrum::anchorAtWord(double now)
{
    if (!anchor)
        anchor = now - anchorLead;
}

std::optional<VoiceFrame> VoiceSpectrum::bandsAt(double now) const
{
    std::optional<double> zero = anchor;
    if (!zero && start > 0)
        zero = start + startToSound;
    if (!zero || *zero <= 0)
        return std::nullopt;
    const double x = (now - *zero) * framesPerSecond;
    if (!(x >= 0 && x < static_cast<double>(frames.size())))
        return std::nullopt;
    const auto i = static_cast<std::size_t>(x);
    const VoiceFrame &first = frames[i];
    const VoiceFrame &second = frames[std::min(i + 1, frames.size() - 1)];
    const double f = x - static_cast<double>(i);
    VoiceFrame bands{};
    for (std::size_t band = 0; band < bands.size(); ++band)
        bands[band] = (1 - f) * first[band] + f * second[band];
    return bands;
}

} // namespace kelo
