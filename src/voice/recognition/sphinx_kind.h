#pragma once

#include "voice/recognition/speech_decoder.h"

namespace kelo {

/// PocketSphinx with its English model, which can be taught names. `directory` holds the model;
/// nothing is available without it.
[[nodiscard]] DecoderKind sphinxKind(const QString &directory);

} // namespace kelo
