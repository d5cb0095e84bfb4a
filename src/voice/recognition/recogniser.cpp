#include "voice/recognition/recogniser.h"

#include "link/paths.h"
#include "voice/recognition/vosk_recogniser.h"

#ifdef KELO_POCKETSPHINX
#include "voice/recognition/sphinx_decoder.h"
#include "voice/recognition/sphinx_recogniser.h"
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
#ifdef KELO_POCKETSPHINX
    const auto directory = QStringLiteral(KELO_POCKETSPHINX);
    const QString dictionary = SphinxDecoder::dictionaryIn(directory);
#else
    const QString dictionary;
#endif
    auto own =
        std::make_unique<VoskRecogniser>(qEnvironmentVariable("KELO_VOSK_LIBRARY", u"libvosk.so"_s),
            qEnvironmentVariable("KELO_VOSK_MODEL", baseDir() + "/vosk-model"_L1), dictionary);
    if (own->isAvailable())
        return own;
#ifdef KELO_POCKETSPHINX
    return std::make_unique<SphinxRecogniser>(directory);
#else
    return nullptr;
#endif
}

} // namespace kelo
