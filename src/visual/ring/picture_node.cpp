#include "visual/ring/picture_node.h"

#include <QSGMaterial>
#include <QSGMaterialShader>

#include <array>
#include <cstring>
#include <map>
#include <vector>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr qsizetype opacityOffset = 64; // bytes, in the shader's uniforms
constexpr qsizetype numbersOffset = 80;

struct PictureVertex {
    float x, y;
    float u, v;
};

class PictureMaterial final : public QSGMaterial {
public:
    explicit PictureMaterial(const QString &name)
        : name_(name)
    {
        setFlag(QSGMaterial::Blending | QSGMaterial::NoBatching);
        static std::map<QString, QSGMaterialType> types;
        type_ = &types[name];
    }

    QSGMaterialType *type() const override { return type_; }
    QSGMaterialShader *createShader(QSGRendererInterface::RenderMode) const override;
    int compare(const QSGMaterial *other) const override { return other == this ? 0 : 1; }

    std::vector<float> numbers;

private:
    QString name_;
    QSGMaterialType *type_;
};

class PictureShader final : public QSGMaterialShader {
public:
    explicit PictureShader(const QString &name)
    {
        setShaderFileName(VertexStage, u":/kelo/shaders/picture.vert.qsb"_s);
        setShaderFileName(FragmentStage, u":/kelo/shaders/%1.frag.qsb"_s.arg(name));
    }

    bool updateUniformData(RenderState &state, QSGMaterial *material, QSGMaterial *) override
    {
        char *data = state.uniformData()->data();
        if (state.isMatrixDirty())
            std::memcpy(data, state.combinedMatrix().constData(), opacityOffset);
        const float opacity = state.opacity();
        std::memcpy(data + opacityOffset, &opacity, sizeof opacity);
        const auto &numbers = static_cast<PictureMaterial *>(material)->numbers;
        std::memcpy(data + numbersOffset, numbers.data(), numbers.size() * sizeof(float));
        return true;
    }
};

QSGMaterialShader *PictureMaterial::createShader(QSGRendererInterface::RenderMode) const
{
    return new PictureShader(name_);
}

} // namespace

PictureNode::PictureNode(const QString &name)
{
    auto *geometry = new QSGGeometry(QSGGeometry::defaultAttributes_TexturedPoint2D(), 0);
    geometry->setDrawingMode(QSGGeometry::DrawTriangleStrip);
    setGeometry(geometry);
    setMaterial(new PictureMaterial(name));
    setFlags(OwnsGeometry | OwnsMaterial);
}

void PictureNode::cover(std::span<const Corner> corners)
{
    const int count = static_cast<int>(corners.size());
    if (count != geometry()->vertexCount())
        geometry()->allocate(count);
    auto *vertex = static_cast<PictureVertex *>(geometry()->vertexData());
    for (const auto &[place, spot] : corners) {
        *vertex++ = {static_cast<float>(place.x()), static_cast<float>(place.y()),
            static_cast<float>(spot.x()), static_cast<float>(spot.y())};
    }
    markDirty(DirtyGeometry);
}

void PictureNode::setNumbers(std::span<const float> numbers)
{
    static_cast<PictureMaterial *>(material())->numbers.assign(numbers.begin(), numbers.end());
    markDirty(DirtyMaterial);
}

} // namespace kelo
