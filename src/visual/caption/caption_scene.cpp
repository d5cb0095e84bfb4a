#include "visual/caption/caption_scene.h"

#include "link/link.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo {

namespace {

constexpr double tail = 9; // units over which the light dies away behind the voice
constexpr double leadUnits = 2.2; // units over which it grows before it

constexpr double stay = 2.0; // seconds
constexpr double fading = 1.6;

constexpr double change = 0.3; // seconds from one line to the next
constexpr double rise = 10; // points that a line comes up from, and leaves by

constexpr double glowSpeaking = 0.55;
constexpr double glowSilent = 0.2;

CaptionLine lineAt(const Link &link, double position)
{
    const auto index = static_cast<std::size_t>(link.segmentIndex(position));
    if (index >= link.segments.size())
        return {};
    const Segment &segment = link.segments[index];
    return {link.caption->mid(segment.start, segment.length), segment.start};
}

} // namespace

Colour captionColour(double ahead, bool contrast)
{
    const Colour spoken = contrast ? Colour{0.93F, 1, 0.95F} : colours::soft;
    const Colour unspoken = contrast ? Colour{0.55F, 0.72F, 0.62F} : Colour{0.16F, 0.46F, 0.3F};
    return ahead >= 0 ? mixed(spoken, white, std::clamp(1 - ahead / tail, 0.0, 1.0))
                      : mixed(unspoken, white, std::clamp(1 + ahead / leadUnits, 0.0, 1.0));
}

double captionOpacity(double silence)
{
    return std::clamp(1 - (silence - stay) / fading, 0.0, 1.0);
}

void CaptionScene::update(Link &link, double now)
{
    position_ = link.glide(link.spokenExact(now), now);
    if (CaptionLine line = lineAt(link, position_); line != line_) {
        leaving_ = opacity_ > 0 ? std::exchange(line_, line) : CaptionLine();
        line_ = std::move(line);
        changedAt_ = now;
    }
    const double t = std::clamp((now - changedAt_) / change, 0.0, 1.0);
    part_ = 1 - (1 - t) * (1 - t);
    if (t >= 1)
        leaving_ = {};
    opacity_ = link.speaking ? 1 : captionOpacity(now - link.doneAt);
    if (line_.text.isEmpty() && leaving_.text.isEmpty())
        opacity_ = 0;
    glow_ = link.speaking ? glowSpeaking : glowSilent;
}

CaptionScene::Motion CaptionScene::arrival() const
{
    return {rise * (1 - part_), part_};
}

CaptionScene::Motion CaptionScene::departure() const
{
    return {-rise * part_, 1 - part_};
}

} // namespace kelo
