#include "visual/caption/caption_node.h"

#include "visual/sprites/shader_material.h"

#include <QSGTexture>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

struct Vertex {
    float x, y;
    float u, v;
    std::array<quint8, 4> light;
};

const QSGGeometry::AttributeSet &attributes()
{
    using A = QSGGeometry::Attribute;
    static const std::array<A, 3> list{
        A::createWithAttributeType(0, 2, QSGGeometry::FloatType, QSGGeometry::PositionAttribute),
        A::createWithAttributeType(1, 2, QSGGeometry::FloatType, QSGGeometry::TexCoordAttribute),
        A::createWithAttributeType(
            2, 4, QSGGeometry::UnsignedByteType, QSGGeometry::ColorAttribute)};
    static const QSGGeometry::AttributeSet set{
        static_cast<int>(list.size()), sizeof(Vertex), list.data()};
    return set;
}

using Light = std::array<quint8, 4>;

/// Part of a line, all of one colour.
struct Piece {
    QRectF place; // in points, from the text's upper left corner
    Light light;
};

/// Neighbours of one colour are one piece: all that is long spoken, and all that is to come.
std::vector<Piece> piecesOf(
    const CaptionRaster &raster, const std::function<Colour(qsizetype)> &colour, double opacity)
{
    const auto byte = [](double value) { return static_cast<quint8>(std::lround(value * 255)); };
    std::vector<Piece> pieces;
    for (const auto &[unit, place] : raster.cells) {
        const Colour lit = colour(unit);
        const Light light{byte(lit.red), byte(lit.green), byte(lit.blue), byte(opacity)};
        if (!pieces.empty() && pieces.back().light == light
            && pieces.back().place.topRight() == place.topLeft())
            pieces.back().place.setRight(place.right());
        else
            pieces.push_back({place, light});
    }
    return pieces;
}

} // namespace

CaptionNode::CaptionNode()
{
    auto *geometry = new QSGGeometry(attributes(), 0, 0, QSGGeometry::UnsignedShortType);
    geometry->setDrawingMode(QSGGeometry::DrawTriangles);
    setGeometry(geometry);
    setMaterial(new ShaderMaterial(u"caption"_s, u"caption"_s));
    setFlags(OwnsGeometry | OwnsMaterial);
}

CaptionNode::~CaptionNode() = default;

void CaptionNode::setTexture(std::unique_ptr<QSGTexture> texture)
{
    texture_ = std::move(texture);
    static_cast<ShaderMaterial *>(material())->texture = texture_.get();
    markDirty(DirtyMaterial);
}

void CaptionNode::show(const CaptionRaster &raster, QPointF origin,
    const std::function<Colour(qsizetype)> &colour, double opacity, Colour glow)
{
    static_cast<ShaderMaterial *>(material())->numbers = {
        glow.red * glow.alpha, glow.green * glow.alpha, glow.blue * glow.alpha, glow.alpha};
    // No more than a sentence may have letters, which is far below what short indices reach.
    const std::vector<Piece> pieces = piecesOf(raster, colour, opacity);
    const std::size_t count = pieces.size();
    geometry()->allocate(static_cast<int>(count * 4), static_cast<int>(count * 6));
    auto *vertex = static_cast<Vertex *>(geometry()->vertexData());
    auto *index = geometry()->indexDataAsUShort();
    for (std::size_t i = 0; i < count; ++i) {
        const auto &[place, light] = pieces[i];
        for (const QPointF corner :
            {place.topLeft(), place.topRight(), place.bottomLeft(), place.bottomRight()}) {
            const QPointF at = corner + origin;
            const QPointF from = corner - raster.area.topLeft();
            *vertex++ = {static_cast<float>(at.x()), static_cast<float>(at.y()),
                static_cast<float>(from.x() / raster.area.width()),
                static_cast<float>(from.y() / raster.area.height()), light};
        }
        for (const std::size_t corner : {0U, 1U, 2U, 2U, 1U, 3U})
            *index++ = static_cast<quint16>(i * 4 + corner);
    }
    markDirty(DirtyGeometry | DirtyMaterial);
}

} // namespace kelo
