#include "visual/caption/caption_item.h"

#include "visual/caption/caption_node.h"
#include "visual/sprites/palette.h"
#include "visual/sprites/text.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGTexture>

#include <cmath>

namespace kelo {

namespace {

constexpr double normalSize = 24; // points
constexpr double largeSize = 36;

} // namespace

/// The two lines' nodes, and whose pictures their textures hold.
class CaptionItem::Node final : public QSGNode {
public:
    struct Slot {
        CaptionNode *node = nullptr;
        WrittenLine picture;
    };
    Slot line;
    Slot leaving;
    LayersNode *underline = new LayersNode;

    Node() { appendChildNode(underline); }

    /// The slot's node with the picture's texture; nullptr, and no node, without a picture.
    CaptionNode *hold(Slot &slot, const WrittenLine &picture, QQuickWindow &window)
    {
        if (!picture || picture->raster.cells.empty()) {
            if (slot.node)
                removeChildNode(slot.node);
            delete std::exchange(slot.node, nullptr);
            slot.picture.reset();
            return nullptr;
        }
        if (!slot.node)
            appendChildNode(slot.node = new CaptionNode);
        if (slot.picture != picture) {
            slot.node->setTexture(std::unique_ptr<QSGTexture>(
                window.createTextureFromImage(picture->raster.picture)));
            slot.picture = picture;
        }
        return slot.node;
    }
};

CaptionItem::CaptionItem(QQuickItem *parent)
    : SceneItem(parent)
    , font_(mono(normalSize, QFont::Medium))
{
}

CaptionItem::~CaptionItem() = default;

void CaptionItem::linkSet(Link &link)
{
    for (const auto changed : {&Link::captionChanged, &Link::captionLiveChanged,
             &Link::largeChanged, &Link::contrastChanged})
        connect(&link, changed, this, &CaptionItem::wake);
}

double CaptionItem::rate() const
{
    return link()->captionLive && isActive() ? 60 : 2;
}

CaptionItem::Look CaptionItem::look() const
{
    constexpr double positionSteps = 256; // a unit
    return {line_, leaving_, scene_.arrival().opacity,
        std::lround(scene_.position() * positionSteps), scene_.opacity(), scene_.glow(), contrast_};
}

void CaptionItem::advance(Link &link, double now)
{
    const Look before = look();
    const bool wasShown = isShown();
    const QString oldText = text();
    const QFont oldFont = font_;
    scene_.update(link, now);
    contrast_ = link.contrast;
    font_ = mono(captionSize(link.large ? largeSize : normalSize, size()), QFont::Medium);
    if (text() != oldText || font_ != oldFont)
        Q_EMIT lineChanged();
    if (isShown() != wasShown)
        Q_EMIT shownChanged();
    if (isShown()) {
        leaving_ =
            write(scene_.leaving(), line_ && line_->line == scene_.leaving() ? line_ : leaving_);
        line_ = write(scene_.line(), line_);
    } else {
        line_.reset();
        leaving_.reset();
    }
    underline(scene_.position());
    if (look() != before)
        update();
}

void CaptionItem::underline(double position)
{
    SpriteList &sprites = underline_.front().sprites;
    sprites.clear();
    if (!line_)
        return;
    const CaptionScene::Motion motion = scene_.arrival();
    QRectF mark;
    for (const auto &[start, under] : line_->raster.words) {
        if (static_cast<double>(line_->line.start + start) > position)
            break;
        mark = under.translated(origin(*line_, motion));
    }
    if (mark.isEmpty())
        return;
    Sprite stroke = box(mark.left(), height() - mark.bottom(), mark.width(), mark.height(),
        colours::pale.faded(scene_.opacity() * motion.opacity));
    stroke.radius = static_cast<float>(mark.height() / 2);
    sprites.push_back(stroke);
}

CaptionItem::WrittenLine CaptionItem::write(const CaptionLine &line, const WrittenLine &old) const
{
    if (line.text.isEmpty())
        return nullptr;
    const double pixels = pixelsPerPoint();
    if (old && old->line == line && old->font == font_ && old->width == width()
        && old->pixels == pixels)
        return old;
    return std::make_shared<Written>(
        Written{line, font_, width(), pixels, rasterise(line.text, font_, width(), pixels)});
}

QPointF CaptionItem::origin(const Written &written, CaptionScene::Motion motion) const
{
    // Where it rests its pixels are the screen's.
    const double top = (height() - written.raster.size.height()) / 2;
    return {0, std::round(top * written.pixels) / written.pixels + motion.offset};
}

Colour CaptionItem::colourAt(const Written &written, qsizetype unit) const
{
    const auto place = static_cast<double>(written.line.start + unit);
    return captionColour(scene_.position() - place, contrast_);
}

Colour CaptionItem::glow() const
{
    return colours::green.faded(scene_.glow());
}

QSGNode *CaptionItem::updateNode(QSGNode *old)
{
    auto *root = old ? static_cast<Node *>(old) : new Node;
    const auto show = [&](Node::Slot &slot, const WrittenLine &picture,
                          CaptionScene::Motion motion) {
        if (CaptionNode *node = root->hold(slot, picture, *window())) {
            node->show(
                picture->raster, origin(*picture, motion),
                [&](qsizetype unit) { return colourAt(*picture, unit); },
                motion.opacity * scene_.opacity(), glow());
        }
    };
    show(root->leaving, leaving_, scene_.departure());
    show(root->line, line_, scene_.arrival());
    root->underline->show(underline_, canvas());
    return root;
}

void CaptionItem::paint(QPainter &painter) const
{
    if (!line_)
        return;
    SceneItem::paint(painter);
    const CaptionRaster &raster = line_->raster;
    painter.setOpacity(scene_.opacity());
    painter.translate(origin(*line_, {}));
    // Each letter's cell of the picture, coloured whole and then cut to the letter's shape.
    QImage coloured(raster.picture.size(), QImage::Format_ARGB32_Premultiplied);
    QImage light(coloured.size(), coloured.format());
    const QColor around = glow().toQColor();
    for (int y = 0; y < coloured.height(); ++y) {
        const uchar *from = raster.picture.constScanLine(y);
        auto *to = reinterpret_cast<QRgb *>(coloured.scanLine(y));
        auto *lit = reinterpret_cast<QRgb *>(light.scanLine(y));
        for (int x = 0; x < coloured.width(); ++x, from += 4) {
            *to++ = qRgba(from[0], from[0], from[0], from[0]);
            *lit++ = qPremultiply(
                qRgba(around.red(), around.green(), around.blue(), around.alpha() * from[1] / 255));
        }
    }
    painter.drawImage(raster.area, light);
    QPainter tint(&coloured);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.scale(line_->pixels, line_->pixels);
    tint.translate(-raster.area.topLeft());
    for (const auto &[unit, place] : raster.cells)
        tint.fillRect(place, colourAt(*line_, unit).toQColor());
    tint.end();
    painter.drawImage(raster.area, coloured);
}

} // namespace kelo
