#include "voice/recognition/sphinx_kind.h"

#include "voice/name/taught_name.h"
#include "voice/recognition/sphinx_decoder.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace kelo {

DecoderKind sphinxKind(const QString &directory)
{
    const QString dictionary = SphinxDecoder::dictionaryIn(directory);
    return {u"PocketSphinx"_s, QFileInfo::exists(dictionary),
        [directory](const std::stop_token &stop) { return SphinxDecoder::load(directory, stop); },
        [dictionary](const WakeTraining &training, const SpeechModelFiles &files,
            const std::stop_token &stop) {
            return prepareTaughtModel(training, files, dictionary, stop);
        }};
}

} // namespace kelo
