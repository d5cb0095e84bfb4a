#include "visual/ring/core_scene.h"

#include "link/link.h"
#include "visual/sprites/palette.h"

#include <cmath>
#include <numbers>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using std::numbers::pi;

constexpr double shortestStep = 0.001; // seconds
constexpr double longestStep = 0.05; // the springs stay stable up to here
constexpr double aimRate = 26; // a second
constexpr double stiffness = 210;
constexpr double damping = 17;
constexpr double highestBand = 1.4;
constexpr double levelRate = 10; // a second

constexpr qsizetype newestRipples = 16;
constexpr double rippleLife = 1.4; // seconds
constexpr double lowestKey = 21;
constexpr double keySpan = 87;

/// Every motion of the pictures repeats after this many seconds: each runs at a whole number of
/// tenths of a radian a second. Starting over there keeps their single precision.
constexpr double flowPeriod = 20 * pi;

constexpr double scopeHeight = 34; // points
constexpr double scopeGap = 6; // between it and the ring
constexpr double ringMargin = 4;
constexpr double ringSpan = 1.72; // of the ring's picture, in radii

constexpr int ticks = 72;
constexpr double tickOuter = 0.975; // radii
constexpr double tickInner = 0.955;
constexpr double longTickInner = 0.925; // every sixth

// The words in the middle, in points from it and in points of their face.
constexpr double modeBelow = 2;
constexpr double modeSize = 15;
constexpr double subBelow = 20;
constexpr double subSize = 11;
// Room for them, of the ring's radius: within the heart's rim, and within the waves.
constexpr double rimRoom = 0.258 * 0.94;
constexpr double waveRoom = 0.43 * 0.94;
constexpr double rimShade = 6; // points

/// How much smaller a word must be to fit into a circle of `room` points; 1 at most. `reach`: of
/// its far edge, above or below the circle's middle.
double wordScale(const QString &word, double size, double reach, double room)
{
    const double half = static_cast<double>(word.size()) * letterWidth * size / 2;
    return std::min(1.0, room / std::hypot(half, reach));
}

struct Arc {
    double radius; // of the ring's
    double speed; // radians a second at rest, about
    double sweep; // radians
    double from;
    double width; // points
};

constexpr std::array<Arc, 5> arcs{{
    {0.88, 0.26, 1.9, 0.0, 2.0},
    {0.88, 0.26, 0.7, 3.3, 2.0},
    {0.80, -0.42, 2.6, 1.0, 1.0},
    {0.71, 0.60, 1.1, 0.5, 2.5},
    {0.71, 0.60, 0.5, 3.0, 2.5},
}};

} // namespace

void CoreScene::resize(double width, double height)
{
    width_ = width;
    height_ = height;
    dial_.clear();
    if (isUsable())
        drawDial();
}

double CoreScene::radius() const
{
    return std::min(width_, height_ - scopeHeight - scopeGap) / 2 - ringMargin;
}

double CoreScene::centreY() const
{
    return (height_ - scopeHeight - scopeGap) / 2 + scopeHeight + scopeGap;
}

QRectF CoreScene::ringPlace() const
{
    if (!isUsable())
        return {};
    const double side = ringSpan * radius();
    return {centreX() - side / 2, height_ - centreY() - side / 2, side, side};
}

QRectF CoreScene::scopePlace() const
{
    if (!isUsable())
        return {};
    const double width = std::max(width_ - 80, 60.0);
    return {centreX() - width / 2, height_ - scopeHeight, width, scopeHeight};
}

void CoreScene::update(Link &link, double now, const Motion &motion)
{
    const double step = std::clamp(now - std::exchange(last_, now), shortestStep, longestStep);
    offline_ = link.state == u"OFFLINE"_s;
    flowTime_ = std::fmod(motion.time, flowPeriod);

    spring(targets(link, now, motion.time), step);
    const double mean = std::accumulate(values_.begin(), values_.end(), 0.0) / voiceBandCount;
    const double loudness = std::min(mean * 1.7, 1.0);
    level_ += std::min(step * levelRate, 1.0) * (loudness - level_);
    link.setLevel(level_);

    // The arcs always drift, and faster the louder the voice is.
    const double turn = step * motion.pace * (level_ * 2.2 + 0.9);
    for (std::size_t i = 0; i < arcs.size(); ++i) {
        turned_[i] = std::remainder(turned_[i] + turn * arcs[i].speed, 2 * pi);
    }
    picture_.assign(2, {});
    if (!isUsable())
        return;
    drawArcs(picture_[0].sprites);
    write(picture_[1], link);
}

VoiceFrame CoreScene::targets(const Link &link, double now, double motionTime) const
{
    VoiceFrame target{};
    if (const auto bands = link.voiceBands(now)) {
        for (std::size_t i = 0; i < target.size(); ++i)
            target[i] = std::pow(std::max((*bands)[i], 0.0), 1.35);
    } else if (link.speaking && link.voiceFrames.empty()) {
        // Speech without a spectrum: a shimmer that fades after each word.
        const double said = now - (link.gotWord ? link.wordAt : link.sayStarted);
        const double envelope = std::exp(-3 * said) * 0.35 + 0.3;
        for (std::size_t i = 0; i < target.size(); ++i)
            target[i] = envelope * (std::sin(now * 6 + static_cast<double>(i) * 0.9) * 0.45 + 0.55);
    } else if (!offline_) {
        // A slow breath.
        for (std::size_t i = 0; i < target.size(); ++i)
            target[i] = std::sin(motionTime * 1.1 + static_cast<double>(i) * 0.55) * 0.035 + 0.05;
    }
    const qsizetype oldest = std::max<qsizetype>(link.ripples.size() - newestRipples, 0);
    for (qsizetype r = oldest; r < link.ripples.size(); ++r) {
        const Ripple &ripple = link.ripples[r];
        const double age = now - ripple.at;
        if (age < 0 || age > rippleLife)
            continue;
        const double band =
            (static_cast<double>(ripple.pitch) - lowestKey) / keySpan * (voiceBandCount - 1);
        const double lift =
            (std::clamp(ripple.strength, 0.0, 1.0) * 0.6 + 0.4) * std::exp(-3 * age);
        for (std::size_t i = 0; i < target.size(); ++i) {
            const double away = static_cast<double>(i) - band;
            target[i] = std::max(target[i], lift * std::exp(-away * away / 5));
        }
    }
    return target;
}

void CoreScene::spring(const VoiceFrame &targets, double step)
{
    const double aim = std::min(step * aimRate, 1.0);
    for (std::size_t i = 0; i < values_.size(); ++i) {
        aims_[i] += aim * (targets[i] - aims_[i]);
        speeds_[i] += step * ((aims_[i] - values_[i]) * stiffness - speeds_[i] * damping);
        values_[i] = std::clamp(values_[i] + step * speeds_[i], 0.0, highestBand);
    }
}

void CoreScene::drawDial()
{
    const double r = radius();
    const double x = centreX();
    const double y = centreY();
    dial_.push_back(arc(x, y, r, 0, 2 * pi, 1, colours::green.faded(0.18)));
    for (int i = 0; i < ticks; ++i) {
        const double angle = 2 * pi * i / ticks;
        const double inner = r * (i % 6 == 0 ? longTickInner : tickInner);
        const double outer = r * tickOuter;
        dial_.push_back(line(x + inner * std::cos(angle), y + inner * std::sin(angle),
            x + outer * std::cos(angle), y + outer * std::sin(angle), 1,
            colours::green.faded(0.35)));
    }
}

void CoreScene::drawArcs(SpriteList &list) const
{
    const double r = radius();
    const double x = centreX();
    const double y = centreY();
    for (std::size_t i = 0; i < arcs.size(); ++i) {
        const Arc &row = arcs[i];
        const bool thin = row.width <= 1;
        const double from = row.from + turned_[i];
        list.push_back(arc(x, y, r * row.radius, from, row.sweep, row.width,
            colours::green.faded(thin ? 0.45 : 0.85)));
        if (!thin) {
            const double end = from + row.sweep;
            list.push_back(disc(x + r * row.radius * std::cos(end),
                y + r * row.radius * std::sin(end), 3, colours::pale));
        }
    }
}

void CoreScene::write(Layer &layer, const Link &link) const
{
    const bool online = link.state == u"ONLINE"_s;
    const QString mode = !online ? link.state.get() : link.paused ? u"PAUSED"_s : link.modeName();
    const QString sub = link.paused ? u"RETURN OR KEY 6"_s
        : link.speaking             ? u"SPEAKING"_s
        : online                    ? u"LISTENING"_s
                                    : QString();
    const auto text = TextColours::of(link.contrast);
    const auto modeScale = [&](double room) {
        return wordScale(mode, modeSize, modeSize * capHeight - modeBelow, room * radius());
    };
    // Where it would be too small to read within the rim, the rim runs through it.
    const bool within = modeScale(rimRoom) * modeSize >= subSize;
    const double scale =
        within ? modeScale(rimRoom) : std::min(modeScale(waveRoom), subSize / modeSize);
    const auto fits = [&](double room) {
        return wordScale(sub, subSize, subBelow, room * radius()) >= 1;
    };
    layer.labels.append({.text = mode,
        .x = centreX(),
        .y = centreY() - modeBelow * scale,
        .size = modeSize * scale,
        .centred = true,
        .colour = text.soft});
    if (!within)
        layer.sprites.push_back(shadeBehind(layer.labels.last(), rimShade));
    // Too small to read, it is left out: the header says the same.
    if (sub.isEmpty() || !within || !fits(waveRoom))
        return;
    const Label small{.text = sub,
        .x = centreX(),
        .y = centreY() - subBelow,
        .size = subSize,
        .bold = false,
        .centred = true,
        .colour = text.dim};
    if (!fits(rimRoom))
        layer.sprites.push_back(shadeBehind(small, rimShade)); // the rim runs through it
    layer.labels.append(small);
}

} // namespace kelo
