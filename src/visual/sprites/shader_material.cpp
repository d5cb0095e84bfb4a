#include "visual/sprites/shader_material.h"

#include <QSGMaterialShader>
#include <QSGTexture>

#include <cstring>
#include <map>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

// Bytes in the uniforms.
constexpr qsizetype opacityOffset = 64;
constexpr qsizetype numbersOffset = 80;

class Shader final : public QSGMaterialShader {
public:
    Shader(const QString &vertex, const QString &fragment)
    {
        setShaderFileName(VertexStage, u":/kelo/shaders/%1.vert.qsb"_s.arg(vertex));
        setShaderFileName(FragmentStage, u":/kelo/shaders/%1.frag.qsb"_s.arg(fragment));
    }

    bool updateUniformData(RenderState &state, QSGMaterial *material, QSGMaterial *) override
    {
        char *data = state.uniformData()->data();
        if (state.isMatrixDirty())
            std::memcpy(data, state.combinedMatrix().constData(), opacityOffset);
        const float opacity = state.opacity();
        std::memcpy(data + opacityOffset, &opacity, sizeof opacity);
        const auto &numbers = static_cast<ShaderMaterial *>(material)->numbers;
        if (!numbers.empty())
            std::memcpy(data + numbersOffset, numbers.data(), numbers.size() * sizeof(float));
        return true;
    }

    void updateSampledImage(RenderState &state, int /*binding*/, QSGTexture **texture,
        QSGMaterial *material, QSGMaterial *) override
    {
        *texture = static_cast<ShaderMaterial *>(material)->texture;
        (*texture)->commitTextureOperations(state.rhi(), state.resourceUpdateBatch());
    }
};

} // namespace

ShaderMaterial::ShaderMaterial(QString vertex, const QString &fragment)
    : vertex_(std::move(vertex))
    , fragment_(fragment)
{
    // What is drawn with it is a batch already; merging it with other nodes would only copy it.
    setFlag(Blending | NoBatching);
    static std::map<QString, QSGMaterialType> types;
    type_ = &types[fragment];
}

QSGMaterialShader *ShaderMaterial::createShader(QSGRendererInterface::RenderMode) const
{
    return new Shader(vertex_, fragment_);
}

} // namespace kelo
