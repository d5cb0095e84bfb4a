#pragma once

#include "voice/recognition/decoding_recogniser.h"

namespace kelo {

/// The Vosk library with a model that the user brought along.
class VoskRecogniser final : public DecodingRecogniser {
public:
    /// `library` is a path or a name that the system's loader finds, `directory` holds the model.
    /// `dictionary` is a pronouncing one; without it the name has to be a word of the model.
    VoskRecogniser(const QString &library, const QString &directory, const QString &dictionary);
};

} // namespace kelo
