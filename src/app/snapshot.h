#pragma once

#include "app/snapshot_scenes.h"

#include <QImage>
#include <QString>

namespace kelo {

/// Renders every screen whose name begins with `names`, fed with canned engine lines at fixed
/// times, into PNG files in `folder`: the same bytes on every run of the same build. The window is
/// never shown. Magnified screens are the exception: their glyphs are drawn from outlines, not
/// always alike to the last bit. Returns the exit status: 0, or 1 when a picture could not be made
/// or the system draws in software only, where scenes and shaders would be missing without a word.
int writeSnapshots(const QString &folder, const QString &names);

struct Snapshot {
    QImage image;
    bool inSoftware = false; ///< painted without shaders
};

/// One picture of `scene`.
[[nodiscard]] Snapshot drawSnapshot(const SnapshotScene &scene, bool contrast, QSize size);

} // namespace kelo
