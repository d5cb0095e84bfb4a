#include "visual/notes/rain_scene.h"

#include "link/link.h"
#include "visual/sprites/palette.h"

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr double longestFrame = 0.05; // seconds; after a stall nothing leaps
constexpr double burstRate = 900; // sparks a second
constexpr std::size_t mostBursts = 128; // those that are over cost nothing

constexpr double gridSpacing = 80; // points
constexpr double gridPeriod = 1.6; // seconds in which the grid drifts up by one space

constexpr double leftMargin = 26; // points from the left edge to what is written there
// Where texts stand one below the other, in points.
constexpr double stackedMargin = 16;
constexpr double stackedGap = 4;
constexpr double stackedSize = 15;
constexpr double progressHeight = 3;
constexpr double shadeReach = 24; // points around what is written

} // namespace

RainScene::RainScene(Link &link)
    : link_(&link)
{
    link.setScene(this);
}

RainScene::~RainScene()
{
    if (link_)
        link_->clearScene(this);
}

void RainScene::resize(double width, double height)
{
    const RainLayout layout{width, height};
    if (layout == std::exchange(layout_, layout))
        return;
    bars_.clear();
    keyboard_.clear();
    bursts_.clear();
    falling_.clear();
    progress_ = 0;
}

void RainScene::clearRoll()
{
    falling_.clear();
    progress_ = 0;
}

void RainScene::note(qint64 pitch, double strength, bool mine)
{
    if (!keyboard::contains(pitch) || !layout_.isUsable())
        return;
    const double now = link_->uptime();
    const int key = static_cast<int>(pitch);
    const double s = std::min(strength, 1.0);

    bars_.release(key, mine, now);
    if (s <= 0) {
        keyboard_.release(key, mine, now);
        return;
    }
    ++notes_;
    if (mine) {
        keyboard_.press(key, mine, s * 0.5 + 0.35, now);
        bars_.press(key, s, mine, now, notes_, layout_);
        burst(key, static_cast<int>(s * 16) + 10, s * 300 + 170, now);
    } else if (link_->rollZero) {
        // The roll's own note falls onto this key already.
        keyboard_.press(key, mine, s * 0.45 + 0.3, now);
        burst(key, static_cast<int>(s * 12) + 8, s * 240 + 150, now);
    } else {
        keyboard_.press(key, mine, 0, now);
        bars_.press(key, s, mine, now, notes_, layout_);
    }
}

void RainScene::burst(int pitch, int count, double speed, double now)
{
    if (bursts_.size() >= mostBursts)
        bursts_.erase(bursts_.begin());
    bursts_.push_back({.x = layout_.centre(pitch),
        .y = layout_.floor(),
        .rate = burstRate,
        .count = count,
        .speed = speed,
        .born = now,
        .seed = ~notes_});
}

void RainScene::update(double now, double driftTime)
{
    const double dt = now - std::exchange(last_, now);
    bars_.advance(now, std::clamp(dt, 0.0, longestFrame) * RainLayout::speed, layout_);
    if (link_->rollZero && layout_.isUsable()) {
        const double elapsed = now - *link_->rollZero;
        falling_.advance(link_->roll, elapsed, layout_);
        const double length = link_->rollLength;
        progress_ = std::clamp(length >= 1 ? elapsed / length : elapsed, 0.0, 1.0);
    }
    for (auto &[sprites, labels] : picture_) {
        sprites.clear();
        labels.clear();
    }
    if (layout_.isUsable())
        draw(now, driftTime);
}

void RainScene::draw(double now, double driftTime)
{
    auto &[below, marks] = picture_[0];
    drawGrid(below, driftTime);
    falling_.drawGlows(below);
    bars_.drawGlows(below, layout_);
    falling_.drawBars(below);
    bars_.drawBars(below, layout_);
    keyboard_.drawKeys(below, layout_, now);

    SpriteList &lights = picture_[1].sprites;
    keyboard_.drawLamps(lights, layout_, now);
    for (const Sparks &burst : bursts_)
        burst.draw(lights, now);
    bars_.drawSparks(lights, now);
    lights.push_back(box(0, layout_.height - progressHeight, layout_.width * progress_,
        progressHeight, colours::green));
    writeMarks(marks);
    writeWords(picture_[1]);
}

void RainScene::drawGrid(SpriteList &list, double driftTime) const
{
    for (int i = 0; i < keyboard::whiteCount; ++i) {
        if (keyboard::pitchClass(keyboard::whites[static_cast<std::size_t>(i)]) == 0) {
            list.push_back(box(layout_.keyWidth() * i - 0.5, layout_.floor(), 1,
                layout_.height - layout_.floor(), colours::green.faded(0.09)));
        }
    }
    const double drift = std::fmod(driftTime, gridPeriod) / gridPeriod * gridSpacing;
    for (double y = 0; y < layout_.height + gridSpacing; y += gridSpacing) {
        list.push_back(box(
            0, layout_.floor() + y + drift - 0.5, layout_.width, 1, colours::green.faded(0.05)));
    }
}

void RainScene::writeMarks(LabelList &list) const
{
    for (qsizetype place = 0; place < link_->buttons.size(); ++place) {
        const qint64 pitch = link_->buttons[place];
        if (keyboard::contains(pitch)) {
            list.append({.text = keyboard::commandKeyLabel(place),
                .x = layout_.centre(pitch),
                .y = 8,
                .size = 11,
                .centred = true,
                .ground = Label::Ground::Outline,
                .colour = colours::green});
        }
    }
}

void RainScene::writeWords(Layer &layer) const
{
    LabelList labels = words();
    if (textsTop_ > 0)
        stack(labels);
    for (Label &label : labels) {
        Sprite shade = shadeBehind(label, shadeReach);
        const double overKeys = layout_.floor() - (shade.y - shade.halfHeight);
        if (overKeys > 0) // what is written close above the keyboard darkens no key
            shade = shadeBehind(label, std::max(2.0, shadeReach - overKeys));
        layer.sprites.push_back(shade);
        label.ground = Label::Ground::Outline;
    }
    layer.labels.append(labels);
}

/// What there is to read, the most important last.
LabelList RainScene::words() const
{
    const double left = leftMargin;
    const double top = layout_.height;
    const double middle = layout_.width / 2;
    const auto text = TextColours::of(link_->contrast);
    LabelList list;
    const auto add = [&list](const Label &label) {
        if (!label.text.isEmpty())
            list.append(label);
    };
    add({.text = u"KELO  //  VISUALISER"_s,
        .x = left,
        .y = top - 50,
        .size = 11,
        .colour = link_->contrast ? text.dim : colours::green.faded(0.5)});
    add({.text = link_->chord, .x = left, .y = top - 96, .size = 38, .colour = text.soft});
    if (link_->rolling) {
        add({.text = u"NOW PLAYING  ·  "_s + link_->rollName->toUpper(),
            .x = left,
            .y = top - 124,
            .size = 13,
            .width = layout_.width - 2 * left,
            .colour = text.soft});
    }
    if (link_->speaking) {
        add({.text = link_->caption,
            .x = middle,
            .y = top - captionTop_,
            .size = 15,
            .bold = false,
            .centred = true,
            .width = std::min(layout_.width * 0.5, 620.0),
            .lines = 2,
            .colour = text.soft});
    }
    const QString notice = link_->paused ? u"PAUSED  ·  RETURN OR KEY 6 TO CARRY ON"_s
        : link_->state == u"OFFLINE"_s   ? u"ENGINE OFFLINE"_s
                                         : QString();
    add({.text = notice,
        .x = middle,
        .y = top * 0.6,
        .size = 22,
        .centred = true,
        .width = layout_.width - 2 * left,
        .colour = text.soft});
    return list;
}

/// One below the other, the most important first, as wide as the scene; what would come to lie on
/// the keyboard is left out.
void RainScene::stack(LabelList &labels) const
{
    double edge = layout_.height - textsTop_;
    LabelList stacked;
    for (auto each = labels.crbegin(); each != labels.crend(); ++each) {
        Label label = *each;
        label.width = layout_.width - 2 * stackedMargin;
        label.x = label.centred ? layout_.width / 2 : stackedMargin;
        label.y = edge;
        label.size = std::min(label.size, stackedSize);
        label.lines = 2;
        const double height = SetLabel(label, layout_.height).text().height() + stackedGap;
        if (edge - height < layout_.floor())
            continue;
        edge -= height;
        stacked.append(label);
    }
    labels = stacked;
}

} // namespace kelo
