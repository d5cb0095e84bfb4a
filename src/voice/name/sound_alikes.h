#pragma once

#include "voice/language/phones.h"

#include <functional>
#include <stop_token>

namespace kelo {

/// Words and pairs of words that are said like one of `ways`: what a recogniser that knows only its
/// own words may write for a name. From the dictionary at `path`, of those that are `known`; the
/// ones for the first ways first, and no more than `limit`. Incomplete after `stop`.
[[nodiscard]] QList<QStringList> soundAlikes(const QList<Phones> &ways, const QString &path,
    const std::function<bool(const QString &word)> &known, qsizetype limit,
    const std::stop_token &stop = {});

} // namespace kelo
