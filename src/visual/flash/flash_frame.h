#pragma once

#include "visual/flash/flash.h"
#include "visual/motion/scene_item.h"

namespace kelo {

/// The frame over the whole window that flashes on beats and on right and wrong answers.
class FlashFrame : public kelo::SceneItem {
    Q_OBJECT
    QML_ELEMENT

public:
    [[nodiscard]] const Picture &picture() const override { return picture_; }

protected:
    void linkSet(Link &link) override;
    void advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override { return isActive() && flashing_ ? 30 : 0; }

private:
    struct Flash {
        QString kind;
        bool firstBeat = false;
        double begin = 0; // uptime
    };

    FlashLimit limit_;
    double asked_ = 0; // uptime at which the latest flash was asked for
    Flash flash_;
    bool flashing_ = false;
    Picture picture_{1};
};

} // namespace kelo
