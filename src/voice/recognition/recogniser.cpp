#include "voice/recognition/recogniser.h"

#include "link/paths.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/vosk_kind.h"

#ifdef KELO_POCKETSPHINX
#include "voice/recognition/sphinx_decoder.h"
#include "voice/recognition/sphinx_kind.h"
#endif

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

bool RecogniserError::isExpected() const
{
    static constexpr std::array codes{203, 216, 301, 1110};
    return domain == "kAFAssistantErrorDomain"_L1
        && std::find(codes.begin(), codes.end(), code) != codes.end();
}

/// A model that the user brought along is wanted; the other is there because it came with this.
std::unique_ptr<Recogniser> Recogniser::ofThisSystem()
{
    std::vector<DecoderKind> kinds;
    QString dictionary;
#ifdef KELO_POCKETSPHINX
    const auto directory = QStringLiteral(KELO_POCKETSPHINX);
    dictionary = SphinxDecoder::dictionaryIn(directory);
    kinds.push_back(sphinxKind(directory));
#endif
    kinds.insert(kinds.begin(),
        voskKind(qEnvironmentVariable("KELO_VOSK_LIBRARY", u"libvosk.so"_s),
            qEnvironmentVariable("KELO_VOSK_MODEL", baseDir() + "/vosk-model"_L1), dictionary));
    auto recogniser = std::make_unique<DecodingRecogniser>(std::move(kinds));
    return recogniser->isAvailable() ? std::move(recogniser) : nullptr;
}

} // namespace kelo
