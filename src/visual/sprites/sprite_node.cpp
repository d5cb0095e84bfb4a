#include "visual/sprites/sprite_node.h"

#include "visual/sprites/shader_material.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr float bentStep = 0.06F; // radians a bent sprite turns from one joint to the next

struct SpriteVertex {
    float x, y; // in the item, y down
    // In feathers, along the sprite's own axes: its place from the sprite's middle, where the
    // corners' circles have theirs, and their radius.
    float acrossX, acrossY, cornerX, cornerY;
    float radius;
    std::array<quint8, 4> light;
};

const QSGGeometry::AttributeSet &spriteAttributes()
{
    using A = QSGGeometry::Attribute;
    static const std::array<A, 4> list{
        A::createWithAttributeType(0, 2, QSGGeometry::FloatType, QSGGeometry::PositionAttribute),
        A::createWithAttributeType(1, 4, QSGGeometry::FloatType, QSGGeometry::UnknownAttribute),
        A::createWithAttributeType(2, 1, QSGGeometry::FloatType, QSGGeometry::UnknownAttribute),
        A::createWithAttributeType(
            3, 4, QSGGeometry::UnsignedByteType, QSGGeometry::ColorAttribute)};
    static const QSGGeometry::AttributeSet set{
        static_cast<int>(list.size()), sizeof(SpriteVertex), list.data()};
    return set;
}

/// A premultiplied colour; one without alpha only adds its light.
std::array<quint8, 4> packed(const Colour &colour, bool additive)
{
    const float alpha = std::clamp(colour.alpha, 0.0F, 1.0F);
    const auto byte = [](float value) { return static_cast<quint8>(std::lround(value * 255.0F)); };
    return {byte(colour.red * alpha), byte(colour.green * alpha), byte(colour.blue * alpha),
        additive ? quint8(0) : byte(alpha)};
}

bool isClosed(const Sprite &sprite)
{
    return sprite.halfWidth >= sprite.bend * std::numbers::pi_v<float>;
}

/// Joints of a bent sprite less one; a straight one has a single piece.
std::size_t pieces(const Sprite &sprite)
{
    if (sprite.bend <= 0)
        return 1;
    const float turn = std::min(sprite.halfWidth / sprite.bend, std::numbers::pi_v<float>) * 2;
    return static_cast<std::size_t>(std::ceil(turn / bentStep)) + 1;
}

/// Writes the vertices of one list of sprites, two a joint, and the triangles between them.
class Writer {
public:
    Writer(QSGGeometry &geometry, double height, double pixels)
        : vertex_(static_cast<SpriteVertex *>(geometry.vertexData()))
        , index_(geometry.indexDataAsUInt())
        , height_(static_cast<float>(height))
        , pixel_(static_cast<float>(1 / pixels))
    {
    }

    void write(const Sprite &sprite)
    {
        // A sharp edge fades over the one pixel that it runs through.
        const bool sharp = sprite.feather <= 0;
        const float margin = sharp ? pixel_ / 2 : 0;
        shape_ = {sprite.halfWidth + margin, sprite.halfHeight + margin, sprite.radius + margin};
        perFeather_ = 1 / (sharp ? pixel_ : sprite.feather);
        top_ = packed(sprite.top, sprite.additive);
        bottom_ = packed(sprite.bottom, sprite.additive);
        if (sprite.bend > 0)
            writeBent(sprite);
        else
            writeStraight(sprite);
    }

private:
    struct Shape {
        float halfWidth, halfHeight, radius;
    };

    void writeStraight(const Sprite &sprite)
    {
        const float w = shape_.halfWidth;
        const float h = shape_.halfHeight;
        const float cosine = std::cos(sprite.angle);
        const float sine = std::sin(sprite.angle);
        for (const float side : {-w, w}) {
            joint(sprite.x + side * cosine - h * sine, sprite.y + side * sine + h * cosine,
                sprite.x + side * cosine + h * sine, sprite.y + side * sine - h * cosine, side);
        }
        connect(1);
    }

    void writeBent(const Sprite &sprite)
    {
        const std::size_t count = pieces(sprite);
        const float outer = sprite.bend + shape_.halfHeight;
        const float inner = sprite.bend - shape_.halfHeight;
        float reach = shape_.halfWidth / sprite.bend;
        if (isClosed(sprite)) {
            reach = std::numbers::pi_v<float>;
            shape_.halfWidth *= 2; // its ends meet: no edge there
        }
        for (std::size_t i = 0; i <= count; ++i) {
            const float turn = reach * (2 * static_cast<float>(i) / static_cast<float>(count) - 1);
            const float cosine = std::cos(sprite.angle + turn);
            const float sine = std::sin(sprite.angle + turn);
            joint(sprite.x + outer * cosine, sprite.y + outer * sine, sprite.x + inner * cosine,
                sprite.y + inner * sine, turn * sprite.bend);
        }
        connect(count);
    }

    void joint(float topX, float topY, float bottomX, float bottomY, float along)
    {
        const float x = shape_.halfWidth - shape_.radius;
        const float y = shape_.halfHeight - shape_.radius;
        const float h = shape_.halfHeight * perFeather_;
        const float a = along * perFeather_;
        const float r = shape_.radius * perFeather_;
        *vertex_++ = {topX, height_ - topY, a, h, x * perFeather_, y * perFeather_, r, top_};
        *vertex_++ = {
            bottomX, height_ - bottomY, a, -h, x * perFeather_, y * perFeather_, r, bottom_};
    }

    /// Two triangles for each of the last `count` pieces.
    void connect(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, first_ += 2) {
            for (const quint32 corner : {0U, 1U, 2U, 2U, 1U, 3U})
                *index_++ = first_ + corner;
        }
        first_ += 2;
    }

    SpriteVertex *vertex_;
    quint32 *index_;
    float height_;
    float pixel_;
    Shape shape_{};
    float perFeather_ = 1;
    std::array<quint8, 4> top_{};
    std::array<quint8, 4> bottom_{};
    quint32 first_ = 0;
};

} // namespace

SpriteNode::SpriteNode()
{
    auto *geometry = new QSGGeometry(spriteAttributes(), 0, 0, QSGGeometry::UnsignedIntType);
    geometry->setDrawingMode(QSGGeometry::DrawTriangles);
    geometry->setVertexDataPattern(QSGGeometry::StreamPattern);
    geometry->setIndexDataPattern(QSGGeometry::StreamPattern);
    setGeometry(geometry);
    setMaterial(new ShaderMaterial(u"sprite"_s, u"sprite"_s));
    setFlags(OwnsGeometry | OwnsMaterial);
}

void SpriteNode::show(std::span<const Sprite> sprites, double height, double pixels)
{
    std::size_t joints = 0;
    std::size_t gaps = 0;
    for (const Sprite &sprite : sprites) {
        const std::size_t count = pieces(sprite);
        joints += count + 1;
        gaps += count;
    }
    geometry()->allocate(static_cast<int>(joints * 2), static_cast<int>(gaps * 6));
    Writer writer(*geometry(), height, pixels);
    for (const Sprite &sprite : sprites)
        writer.write(sprite);
    markDirty(DirtyGeometry);
}

} // namespace kelo
