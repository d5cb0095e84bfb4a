#pragma once

#include "voice/language/phones.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <stop_token>

namespace kelo {

/// The entries of a pronouncing dictionary for `words`, which are in lower case, with alternatives
/// together. Empty when the file cannot be read, incomplete after `stop`.
[[nodiscard]] QHash<QString, QList<Phones>> dictionaryEntries(
    const QString &path, const QSet<QString> &words, const std::stop_token &stop = {});

/// How a speech synthesiser would say `text`, in IPA: as American, as British and, where the
/// script belongs to another language, as that. Runs a program for some 10 ms each and waits for
/// it, unless `stop` is requested. Empty when there is none.
[[nodiscard]] QStringList synthesiserReadings(
    const QString &text, const std::stop_token &stop = {});

/// The name of every letter and digit after the other: what is left when nobody knows better.
/// Never empty.
[[nodiscard]] Phones spelledOut(const QString &text);

} // namespace kelo
