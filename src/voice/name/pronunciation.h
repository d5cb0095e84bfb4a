#pragma once

#include "voice/name/phones.h"

#include <QHash>
#include <QSet>
#include <QString>

namespace kelo {

/// The entries of a pronouncing dictionary for `words`, which are in lower case, with
/// alternatives together. Empty when the file cannot be read.
[[nodiscard]] QHash<QString, QList<Phones>> dictionaryEntries(
    const QString &path, const QSet<QString> &words);

/// How a speech synthesiser would say `text`, in IPA: as American, as British and, where the
/// script belongs to another language, as that. Runs a program for some 10 ms each and waits for
/// it. Empty when there is none.
[[nodiscard]] QStringList synthesiserReadings(const QString &text);

/// The name of every letter and digit after the other: what is left when nobody knows better.
/// Never empty.
[[nodiscard]] Phones spelledOut(const QString &text);

} // namespace kelo
