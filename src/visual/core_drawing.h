#pragma once

#include "visual/core_scene.h"
#include "visual/motion_time.h"
#include "visual/scene_item.h"

#include <QMatrix4x4>

namespace kelo {

/// The ring scene as an item: it draws the circles and arcs and says how the two pictures, which
/// are shader effects over it, look and where they belong. While nothing happens it comes to rest.
class CoreDrawing : public kelo::SceneItem {
    Q_OBJECT
    Q_PROPERTY(QMatrix4x4 bands READ bands NOTIFY advanced)
    Q_PROPERTY(float level READ level NOTIFY advanced)
    Q_PROPERTY(float amplitude READ amplitude NOTIFY advanced)
    Q_PROPERTY(float flowTime READ flowTime NOTIFY advanced)
    Q_PROPERTY(double ringOpacity READ ringOpacity NOTIFY advanced)
    Q_PROPERTY(QRectF ringPlace READ ringPlace NOTIFY placed)
    Q_PROPERTY(QRectF scopePlace READ scopePlace NOTIFY placed)
    QML_ELEMENT

public:
    /// The 16 bands, four a column.
    [[nodiscard]] QMatrix4x4 bands() const;
    [[nodiscard]] float level() const { return static_cast<float>(scene_.level()); }
    [[nodiscard]] float amplitude() const { return static_cast<float>(scene_.amplitude()); }
    [[nodiscard]] float flowTime() const { return static_cast<float>(scene_.flowTime()); }
    [[nodiscard]] double ringOpacity() const { return scene_.ringOpacity(); }
    [[nodiscard]] QRectF ringPlace() const { return scene_.ringPlace(); }
    [[nodiscard]] QRectF scopePlace() const { return scene_.scopePlace(); }

Q_SIGNALS:
    void advanced();
    void placed();

protected:
    void linkSet(Link *link) override;
    bool advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override;
    [[nodiscard]] const SpriteList &sprites() const override { return scene_.sprites(); }
    [[nodiscard]] LabelList texts() const override { return scene_.labels(); }
    void paint(QPainter &painter) const override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    void disturb();

    CoreScene scene_;
    MotionTime motion_;
};

} // namespace kelo
