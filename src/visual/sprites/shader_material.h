#pragma once

#include <QSGMaterial>
#include <QString>

#include <vector>

class QSGTexture;

namespace kelo {

/// A material drawn by shaders of our own. All of them begin their uniforms with the matrix and the
/// opacity; a shader's own numbers follow from byte 80 on.
class ShaderMaterial final : public QSGMaterial {
public:
    /// By the names of the shaders' files.
    ShaderMaterial(QString vertex, const QString &fragment);

    QSGMaterialType *type() const override { return type_; }
    QSGMaterialShader *createShader(QSGRendererInterface::RenderMode) const override;
    int compare(const QSGMaterial *other) const override { return other == this ? 0 : 1; }

    std::vector<float> numbers;
    QSGTexture *texture = nullptr; ///< at binding 1, where the shader has one

private:
    QString vertex_;
    QString fragment_;
    QSGMaterialType *type_;
};

} // namespace kelo
