#pragma once

#include "visual/ring/ring_formula.h"

#include <QRectF>
#include <QSGNode>

namespace kelo {

/// Draws the ring and the oscilloscope line, no more of their squares than there is light in.
/// Lives on the render thread.
class RingNode final : public QSGNode {
public:
    RingNode();

    void show(const QRectF &ring, const QRectF &scope, const RingLook &look);

private:
    class PictureNode;

    void showWaves(const QRectF &place, const RingLook &look);
    void showHeart(const QRectF &place, const RingLook &look);
    void showScope(const QRectF &place, const RingLook &look);

    // Children, owned by the scene graph.
    PictureNode *heart_;
    PictureNode *waves_;
    PictureNode *scope_;
    QRectF ringPlace_;
    QRectF scopePlace_;
    double reach_ = 0; // of the waves' light
};

} // namespace kelo
