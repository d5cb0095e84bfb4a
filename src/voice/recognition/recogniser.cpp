#include "voice/recognition/recogniser.h"

#ifdef KELO_POCKETSPHINX
#include "voice/recognition/sphinx_recogniser.h"
#endif

namespace kelo {

std::unique_ptr<Recogniser> Recogniser::ofThisSystem()
{
#ifdef KELO_POCKETSPHINX
    return std::make_unique<SphinxRecogniser>(QStringLiteral(KELO_POCKETSPHINX));
#else
    return nullptr;
#endif
}

} // namespace kelo
