#pragma once

#include "link/link.h"
#include "visual/motion/frame_pacer.h"
#include "visual/sprites/sprite_item.h"
#include "visual/sprites/text.h"

namespace kelo {

/// The shared state as a type that this module's items take; it gets its name for QML where the
/// display is put together.
struct LinkOfItems {
    Q_GADGET
    QML_FOREIGN(kelo::Link)
    QML_ANONYMOUS
};

/// An item that shows a scene of sprites and texts over the link: once a frame it brings the scene
/// to the link's time and draws it.
class SceneItem : public kelo::SpriteItem {
    Q_OBJECT
    Q_PROPERTY(kelo::Link *link READ link WRITE setLink NOTIFY linkChanged)
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(QVariantList labels READ labels NOTIFY labelsChanged)
    QML_ELEMENT
    QML_UNCREATABLE("what scenes have in common")

public:
    [[nodiscard]] Link *link() const { return link_; }
    void setLink(Link *link);

    /// Whether it moves at its full rate. A window that cannot be seen stops it in any case.
    [[nodiscard]] bool isActive() const { return active_; }
    void setActive(bool active);

    /// The scene's texts, as `Label`s.
    [[nodiscard]] QVariantList labels() const { return labels_; }

    /// Brings the scene to the link's time now, in a window that is shown or not.
    void refresh();

Q_SIGNALS:
    void linkChanged();
    void activeChanged();
    void labelsChanged();

protected:
    explicit SceneItem(QQuickItem *parent = nullptr);

    /// Brings the scene to `now`; false when none of its sprites changed.
    virtual bool advance(Link &link, double now) = 0;
    /// Frames a second that the scene wants, asked after each `advance`.
    [[nodiscard]] virtual double rate() const = 0;
    [[nodiscard]] virtual LabelList texts() const { return {}; }
    /// Called when the link is set; nullptr when it goes.
    virtual void linkSet(Link * /*link*/) { }

    [[nodiscard]] const FramePacer &pacer() const { return pacer_; }
    /// Has the scene look at the link again soon, if it can be seen.
    void wake();

    void componentComplete() override;
    void updatePolish() override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    void pace();

    QPointer<Link> link_;
    bool active_ = true;
    LabelList texts_;
    QVariantList labels_;
    FramePacer pacer_{*this};
};

} // namespace kelo
