#include "visual/ring/ring_node.h"

#include "visual/sprites/shader_material.h"

#include <QSGGeometryNode>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using std::numbers::pi;

// Radii, where 1 is the edge of the ring's square. Between the heart's rim and the light of the
// innermost wave there is nothing; all of the waves' light dies away within its reach of the
// outermost one.
constexpr double heartReach = 0.356;
constexpr double waveBase = 0.50;
constexpr double waveRipple = 0.016;
constexpr double waveSwell = 0.34; // of a full band
constexpr double waveLevel = 0.02;
constexpr double lightReach = 0.126;
constexpr double reachStep = 0.02; // the mesh stays the same within one

constexpr std::size_t sides =
    24; // of the polygons that stand for circles; a multiple of 8, for corners

float single(double value)
{
    return static_cast<float>(value);
}

/// A corner of the strip of triangles that a picture is drawn on.
struct Corner {
    QPointF place; // in the item, points
    QPointF spot; // in the picture, in its shader's own unit
};

/// Where in the item a spot of a square picture lies, y up in the one and down in the other.
Corner corner(const QRectF &place, double x, double y)
{
    return {
        {place.center().x() + x * place.width() / 2, place.center().y() - y * place.height() / 2},
        {x, y}};
}

/// A corner of the polygon that encloses the circle of radius `reach`, within the square.
Corner side(const QRectF &place, std::size_t i, double reach)
{
    const double angle = 2 * pi * static_cast<double>(i) / sides;
    const auto inSquare = [](double value) { return std::clamp(value, -1.0, 1.0); };
    return corner(place, inSquare(reach * std::cos(angle)), inSquare(reach * std::sin(angle)));
}

/// How far the waves' light can reach.
double reachOf(const RingLook &look)
{
    const double swell = *std::max_element(look.bands.begin(), look.bands.end());
    const double circle =
        waveBase + waveRipple + swell * waveSwell + look.level * waveLevel + lightReach;
    const double polygon = std::ceil(circle / std::cos(pi / sides) / reachStep) * reachStep;
    return polygon <= 1 ? polygon : 1.5; // all of the square
}

void appendPhase(std::vector<float> &numbers, double phase)
{
    numbers.push_back(single(std::cos(phase)));
    numbers.push_back(single(std::sin(phase)));
}

} // namespace

/// A picture that a fragment shader computes from its place in it, `spot`, and from its numbers.
class RingNode::PictureNode final : public QSGGeometryNode {
public:
    explicit PictureNode(const QString &shader)
    {
        auto *geometry = new QSGGeometry(QSGGeometry::defaultAttributes_TexturedPoint2D(), 0);
        geometry->setDrawingMode(QSGGeometry::DrawTriangleStrip);
        setGeometry(geometry);
        setMaterial(new ShaderMaterial(u"picture"_s, shader));
        setFlags(OwnsGeometry | OwnsMaterial);
    }

    /// Covers the strip of triangles between `corners`, each with the two before it.
    void cover(std::span<const Corner> corners)
    {
        const int count = static_cast<int>(corners.size());
        if (count != geometry()->vertexCount())
            geometry()->allocate(count);
        auto *vertex = geometry()->vertexDataAsTexturedPoint2D();
        for (const auto &[place, spot] : corners)
            vertex++->set(single(place.x()), single(place.y()), single(spot.x()), single(spot.y()));
        markDirty(DirtyGeometry);
    }

    void setNumbers(std::span<const float> numbers)
    {
        static_cast<ShaderMaterial *>(material())->numbers.assign(numbers.begin(), numbers.end());
        markDirty(DirtyMaterial);
    }
};

RingNode::RingNode()
    : heart_(new PictureNode(u"heart"_s))
    , waves_(new PictureNode(u"waves"_s))
    , scope_(new PictureNode(u"scope"_s))
{
    for (PictureNode *picture : {heart_, waves_, scope_})
        appendChildNode(picture);
}

void RingNode::show(const QRectF &ring, const QRectF &scope, const RingLook &look)
{
    showWaves(ring, look);
    showHeart(ring, look);
    showScope(scope, look);
    ringPlace_ = ring;
    scopePlace_ = scope;
}

void RingNode::showWaves(const QRectF &place, const RingLook &look)
{
    const double reach = reachOf(look);
    if (place != ringPlace_ || reach != reach_) {
        reach_ = reach;
        std::array<Corner, 2 * (sides + 1)> strip;
        for (std::size_t i = 0; i <= sides; ++i) {
            strip[2 * i] = side(place, i, reach);
            strip[2 * i + 1] = side(place, i, heartReach);
        }
        waves_->cover(strip);
    }
    std::vector<float> numbers;
    for (const double band : look.bands)
        numbers.push_back(single(band));
    for (int i = 0; i < 3; ++i) {
        appendPhase(numbers, -1.6 * look.time + 1.7 * i);
        appendPhase(numbers, 2.3 * look.time + i);
    }
    for (int i = 0; i < 3; ++i)
        appendPhase(numbers, look.time * (1.1 + 0.6 * i) + 2.1 * i);
    numbers.push_back(single(look.level));
    numbers.push_back(single(look.opacity));
    waves_->setNumbers(numbers);
}

void RingNode::showHeart(const QRectF &place, const RingLook &look)
{
    if (place != ringPlace_) {
        std::array<Corner, sides> strip; // to and fro across the polygon
        for (std::size_t i = 0; i < sides; ++i) {
            const std::size_t corner = i % 2 == 0 ? (sides - i / 2) % sides : (i + 1) / 2;
            strip[i] = side(place, corner, heartReach);
        }
        heart_->cover(strip);
    }
    heart_->setNumbers(std::array{single(look.level), single(look.opacity)});
}

void RingNode::showScope(const QRectF &place, const RingLook &look)
{
    if (place != scopePlace_) {
        scope_->cover(std::array<Corner, 4>{{
            {place.topLeft(), {0, 1}},
            {place.topRight(), {1, 1}},
            {place.bottomLeft(), {0, 0}},
            {place.bottomRight(), {1, 0}},
        }});
    }
    scope_->setNumbers(std::array{single(look.amplitude), single(look.time)});
}

} // namespace kelo
