#pragma once

#include "voice/recognition/decoding_recogniser.h"

namespace kelo {

/// PocketSphinx with its English model, which can be taught names.
class SphinxRecogniser final : public DecodingRecogniser {
public:
    /// `directory` holds the model; nothing is available without it.
    explicit SphinxRecogniser(const QString &directory);
};

} // namespace kelo
