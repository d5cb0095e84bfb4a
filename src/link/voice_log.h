#pragma once

#include "link/records.h"

#include <QList>

namespace kelo {

/// What was said, by the assistant and to it.
struct VoiceLog {
    QList<Spoken> lines; ///< oldest first
    qint64 lastId = 0;

    /// Appends a line, then keeps the newest `most`.
    void add(const QString &timeOfDay, const QString &text, qsizetype most);
};

} // namespace kelo
