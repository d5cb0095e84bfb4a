#pragma once

#include <QtGlobal>

namespace kelo {

/// What the link tells the falling-notes scene.
class NoteListener {
public:
    virtual ~NoteListener() = default;

    /// A note began (`strength` above 0, velocity / 127) or ended, played by the user (`mine`) or
    /// by the engine.
    virtual void note(qint64 pitch, double strength, bool mine) = 0;
    /// The roll was replaced or stopped.
    virtual void clearRoll() = 0;

protected:
    NoteListener() = default;
    Q_DISABLE_COPY_MOVE(NoteListener)
};

} // namespace kelo
