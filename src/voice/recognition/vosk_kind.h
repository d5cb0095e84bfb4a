#pragma once

#include "voice/recognition/speech_decoder.h"

namespace kelo {

/// The Vosk library with a model that the user brought along. `library` is a path or a name that
/// the system's loader finds, `directory` holds the model. `dictionary` is a pronouncing one;
/// without it the name has to be a word of the model.
[[nodiscard]] DecoderKind voskKind(
    const QString &library, const QString &directory, const QString &dictionary);

} // namespace kelo
