#pragma once

#include <QByteArrayList>
#include <QSize>
#include <QString>

#include <vector>

namespace kelo {

/// Some engine lines (without their "@"), and how long after the step before they arrive.
struct SnapshotStep {
    double after = 0; ///< seconds
    QByteArrayList lines;
};

/// One screen of the picture book.
struct SnapshotScene {
    QString name; ///< the picture's file name begins with it
    std::vector<SnapshotStep> steps; ///< what came before the window
    std::vector<SnapshotStep> shown{}; ///< what it sees; the screen stays the same
    bool large = false; ///< large captions
    bool offline = false; ///< the engine is gone for good
    int question = 0; ///< the first-run question that shows, when one does
    double scale = 1; ///< how large all is drawn
    std::vector<QSize> sizes{{1240, 840}, {900, 600}};
    QString item{}; ///< of the visual module, alone in the window; none: the whole display
    /// One small picture, kept in the tree for comparison. Those whose names end in a number stand
    /// on one sheet there.
    bool reference = false;
};

[[nodiscard]] std::vector<SnapshotScene> snapshotScenes();

} // namespace kelo
