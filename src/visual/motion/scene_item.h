#pragma once

#include "link/link.h"
#include "visual/motion/frame_pacer.h"
#include "visual/motion/motion_time.h"
#include "visual/sprites/sprite_item.h"

namespace kelo {

/// The shared state as a type that this module's items take; it gets its name for QML where the
/// display is put together.
struct LinkOfItems {
    Q_GADGET
    QML_FOREIGN(kelo::Link)
    QML_ANONYMOUS
};

/// An item that shows a scene over the link: once a frame it brings the scene to the link's time,
/// and draws it if that changed it.
class SceneItem : public kelo::SpriteItem {
    Q_OBJECT
    Q_PROPERTY(kelo::Link *link READ link WRITE setLink NOTIFY linkChanged)
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
    QML_ELEMENT
    QML_UNCREATABLE("what scenes have in common")

public:
    [[nodiscard]] Link *link() const { return link_; }
    void setLink(Link *link);

    /// Whether it moves at its full rate. A window that cannot be seen stops it in any case.
    [[nodiscard]] bool isActive() const { return active_; }
    void setActive(bool active);

    /// Brings the scene to the link's time now, in a window that is shown or not.
    void refresh();

    /// The desktop asks for no motion that says nothing. Holds for all scenes.
    static void setReducedMotion(bool reduced);

Q_SIGNALS:
    void linkChanged();
    void activeChanged();

protected:
    explicit SceneItem(QQuickItem *parent = nullptr);

    /// Brings the scene's picture to `now`. What it draws besides asks for an update itself.
    virtual void advance(Link &link, double now) = 0;
    /// Frames a second that the scene wants, asked after each `advance`.
    [[nodiscard]] virtual double rate() const = 0;
    /// Called when the link is set, and before it is another one or none.
    virtual void linkSet(Link & /*link*/) { }
    virtual void linkGone() { }

    [[nodiscard]] Drift drift() const;
    [[nodiscard]] const FramePacer &pacer() const { return pacer_; }
    /// Has the scene look at the link again soon, if it can be seen.
    void wake();

    void updatePolish() override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    void pace();

    QPointer<Link> link_;
    bool active_ = true;
    Picture shown_;
    double pixels_ = 0; // a point
    FramePacer pacer_{*this};
};

} // namespace kelo
