#pragma once

#include "support/link_fixture.h"
#include "visual/motion/scene_item.h"

#include <QImage>
#include <QQuickView>

namespace kelo::test {

/// A window with one item of the module in it, over a link of its own. It is shown only on demand.
class ItemWindow {
public:
    explicit ItemWindow(const QString &type, QSize size = {400, 440});

    /// What it shows of the link as it is now.
    QImage picture();

    LinkFixture fixture;
    QQuickView window;
    SceneItem *item = nullptr;
};

} // namespace kelo::test
