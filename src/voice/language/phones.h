#pragma once

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

} // namespace kelo
