#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

namespace kelo {

/// How a word sounds, in the 39 phones that the recogniser's English model knows, for example
/// {"K", "IY", "L", "OW"}.
using Phones = QStringList;

/// The phones that come closest to `ipa` (International Phonetic Alphabet). Marks of stress, length
/// and language are ignored, and so is what stands for no sound.
[[nodiscard]] Phones phonesOfIpa(const QString &ipa);

/// The same for X-SAMPA.
[[nodiscard]] Phones phonesOfXSampa(const QString &xSampa);

/// `phones` and other ways in which speakers of English commonly say the same; `phones` first, at
/// most `limit` in all.
[[nodiscard]] QList<Phones> accentsOf(const Phones &phones, qsizetype limit);

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
