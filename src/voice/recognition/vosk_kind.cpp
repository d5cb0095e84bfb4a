#include "voice/recognition/vosk_kind.h"

#include "voice/name/taught_name.h"
#include "voice/recognition/vosk_decoder.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace kelo {

DecoderKind voskKind(const QString &file, const QString &directory, const QString &dictionary)
{
    // Without a model the library is not even loaded: it takes its time.
    auto library = QFileInfo(directory).isDir() ? VoskLibrary::load(file) : nullptr;
    DecoderKind kind{"Vosk, "_L1 + QDir(directory).dirName(), library != nullptr,
        [library, directory, dictionary](
            const std::stop_token &) { return VoskDecoder::load(library, directory, dictionary); },
        nullptr};
    if (QFileInfo::exists(dictionary)) {
        kind.teacher = [dictionary](const WakeTraining &training, const SpeechModelFiles &files,
                           const std::stop_token &stop) {
            return prepareTaughtModel(training, files, dictionary, stop);
        };
    }
    return kind;
}

} // namespace kelo
