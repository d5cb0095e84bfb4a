#pragma once

#include "link/records.h"

#include <QHash>
#include <QList>
#include <QSet>

namespace kelo {

/// The piano: what the player and the engine hold down, and what they lately pressed. Times are
/// seconds of uptime; pitches may lie outside the keys of a piano, as sent.
struct Keyboard {
    QHash<qint64, qint64> down; ///< keys the player holds, with their velocity
    QSet<qint64> played; ///< keys the engine sounds
    QList<Ripple> ripples; ///< the player's key presses, newest last
    QList<Ripple> echoes; ///< the engine's notes, newest last
    QList<qint64> buttons; ///< keys that act as command keys, in order
    QString chord; ///< the last chord that the player held
    double chordAt = 0; ///< when it was named

    /// The player pressed a key; names the chord that is held now, if it is one.
    void press(qint64 pitch, qint64 velocity, double now);
    void release(qint64 pitch, double now);
    /// The same for a note of the engine, which names no chord.
    void sound(qint64 pitch, qint64 velocity, double now);
    void silence(qint64 pitch, double now);
    /// Nobody holds anything any more.
    void letGo();
};

/// How hard a key of this velocity was pressed, 0 to 1.
[[nodiscard]] double strengthOf(qint64 velocity);

} // namespace kelo
